#include "Quelm/EditorWindow/OpeningPage.h"

#include "Quelm/EditorWindow/ProgressLine.h"
#include "Quelm/Foundation/Fonts.h"
#include "TextCore/Check.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quelm {

OpeningPage::OpeningPage(QWidget* parent) : QWidget(parent), content_(new QWidget(this)) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    auto* label = new QLabel(tr("Abriendo…"));
    label->setFont(systemFont(TextStyle::body));
    label->setForegroundRole(QPalette::PlaceholderText);

    auto* column = new QVBoxLayout(content_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaledPixels(12));
    column->addWidget(label, 0, Qt::AlignHCenter);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(content_, 0, Qt::AlignCenter);
}

void OpeningPage::showProgress(std::shared_ptr<const WorkProgress> progress) {
    require(!cancelButton_, "the progress of one reading is shown");
    auto* line = new ProgressLine(std::move(progress));
    line->setAccessibleName(tr("Lectura del archivo"));
    cancelButton_ = new QPushButton(tr("Cancelar"));
    connect(cancelButton_, &QPushButton::clicked, this, &OpeningPage::cancelled);
    auto* column = static_cast<QVBoxLayout*>(content_->layout());
    column->addWidget(line, 0, Qt::AlignHCenter);
    column->addWidget(cancelButton_, 0, Qt::AlignHCenter);
}

} // namespace quelm
