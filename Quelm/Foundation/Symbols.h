#pragma once

#include "Quelm/Foundation/SemanticColors.h"

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace quelm {

/// Symbols are drawings of one colour, named as in "chevron.right" and kept as vectors in the application's resources;
/// a name without a drawing is a programming error. They are rendered when first painted, at the device's own pixels.

/// An icon in the colour of the role, which follows the application's appearance whenever it is painted.
QIcon symbolIcon(const QString& name, ColorRole role);

/// Paints the symbol as large as fits into `area` (logical pixels), turned clockwise about its centre.
void paintSymbol(QPainter& painter, const QString& name, const QRectF& area, const QColor& color,
                 double clockwiseDegrees = 0);

} // namespace quelm
