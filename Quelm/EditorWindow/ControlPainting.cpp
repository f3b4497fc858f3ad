#include "Quelm/EditorWindow/ControlPainting.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QPainter>

namespace quelm {

QColor translucent(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

void paintTint(QPainter& painter, const QRectF& area, double radius, Appearance appearance, float opacity) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(translucent(semanticColor(ColorRole::text, appearance), opacity));
    painter.drawRoundedRect(area, radius, radius);
}

void paintFocusRing(QPainter& painter, const QRectF& area, double radius, Appearance appearance) {
    const int width = scaledPixels(2);
    const double inset = width / 2.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(semanticColor(ColorRole::accent, appearance), width));
    painter.drawRoundedRect(area.adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace quelm
