#pragma once

#include "Quelm/Foundation/Appearance.h"

#include <QColor>

class QPainter;
class QRectF;

namespace quelm {

/// The colour with another opacity.
QColor translucent(QColor color, float opacity);

/// Tints a control in the colour of texts, as where the pointer is over it. Painters are to smooth edges here and
/// below.
void paintTint(QPainter& painter, const QRectF& area, double radius, Appearance appearance, float opacity);

/// The ring along the inside of the edge of a control that has the focus.
void paintFocusRing(QPainter& painter, const QRectF& area, double radius, Appearance appearance);

} // namespace quelm
