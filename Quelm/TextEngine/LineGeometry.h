#pragma once

#include "Quelm/TextEngine/AttributeRuns.h"
#include "Quelm/TextEngine/GridGlyphs.h"
#include "Quelm/TextEngine/LayoutCache.h"

#include <QPointF>

#include <functional>
#include <utility>
#include <vector>

class QPainter;

namespace quelm {

/// Stretches of x, each from left to right.
using Stretches = std::vector<std::pair<double, double>>;

/// What it takes to paint a row of a line.
struct RowPainting {
    QPainter& painter;
    /// Where the row's x is 0, on its baseline.
    QPointF origin;
    /// What has to be painted, in the row's x.
    double left;
    double right;
    const AttributeRuns& attributes;
    /// The offset of the line's first unit among the attributes.
    qint64 lineStart;
    const std::function<QColor(ColorRole)>& color;
    /// Empty between uses.
    GridGlyphs& glyphs;
};

/// Where the characters of one line stand. Units count from the line's start to `length()`, which is before the line
/// break; rows and x are as in `TextLayout`. Units and rows outside of the line are programming errors.
class LineGeometry : public LayoutPart {
public:
    virtual qint64 length() const = 0;

    /// At least 1.
    virtual qint64 rowCount() const = 0;
    virtual qint64 rowOf(qint64 unit) const = 0;
    virtual TextRange rowRange(qint64 row) const = 0;

    /// From the start of the unit's row. A composition stands after the place before it.
    virtual double x(qint64 unit) const = 0;
    /// A place of the row near `x`, not surely between clusters.
    virtual qint64 unitAt(qint64 row, double x) const = 0;
    virtual double width(qint64 row) const = 0;
    /// `units` lie in the row.
    virtual void appendStretches(qint64 row, TextRange units, Stretches& stretches) const = 0;

    /// The caret of a composition in the line: its row, and x there.
    struct CaretPlace {
        qint64 row = 0;
        double x = 0;
    };
    virtual CaretPlace compositionCaret() const = 0;

    virtual void paint(const RowPainting& painting, qint64 row) const = 0;
};

} // namespace quelm
