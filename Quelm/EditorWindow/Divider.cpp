#include "Quelm/EditorWindow/Divider.h"

#include "Quelm/Foundation/SemanticColors.h"

#include <QPainter>

namespace quelm {

Divider::Divider(QWidget* parent) : QWidget(parent) {
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), semanticColor(ColorRole::separator, appearanceOf(palette())));
}

} // namespace quelm
