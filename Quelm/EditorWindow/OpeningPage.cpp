#include "Quelm/EditorWindow/OpeningPage.h"

#include "Quelm/Foundation/Fonts.h"

#include <QLabel>
#include <QVBoxLayout>

namespace quelm {

OpeningPage::OpeningPage(QWidget* parent) : QWidget(parent) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    auto* label = new QLabel(tr("Abriendo…"));
    label->setAlignment(Qt::AlignCenter);
    label->setFont(systemFont(TextStyle::body));
    label->setForegroundRole(QPalette::PlaceholderText);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
}

} // namespace quelm
