#include "Quelm/EditorWindow/OpeningPage.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QLabel>
#include <QVBoxLayout>

namespace quelm {

OpeningPage::OpeningPage(QWidget* parent) : QWidget(parent) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    auto* label = new QLabel(tr("Abriendo…"));
    label->setAlignment(Qt::AlignCenter);
    label->setFont(systemFont(TextStyle::body));
    QPalette quiet = label->palette();
    quiet.setColor(QPalette::WindowText, semanticColor(ColorRole::secondaryText, appearanceOf(quiet)));
    label->setPalette(quiet);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
}

} // namespace quelm
