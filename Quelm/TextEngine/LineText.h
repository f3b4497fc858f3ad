#pragma once

#include "Quelm/TextEngine/LineGeometry.h"

#include <functional>

namespace quelm {

/// What it takes to paint a row of a text.
struct TextPainting {
    /// Calls its argument with the pieces of one colour of a stretch.
    using VisitColor = std::function<void(qint64 from, qint64 length, ColorRole role)>;
    using ColorsOf = std::function<void(TextRange stretch, const VisitColor& visit)>;

    QPainter& painter;
    /// Where the row's x is 0, on its baseline.
    QPointF origin;
    /// What has to be painted, in the row's x.
    double left;
    double right;
    const ColorsOf& colorsOf;
    const std::function<QColor(ColorRole)>& color;
    /// For use in between.
    GridGlyphs& glyphs;
};

/// A text of bounded length without line breaks, laid out in one row or more. Indexes are those of its string.
class LineText {
public:
    LineText() = default;
    LineText(const LineText&) = delete;
    LineText& operator=(const LineText&) = delete;
    virtual ~LineText() = default;

    virtual int length() const = 0;
    virtual int rowCount() const = 0;
    virtual int rowOf(int index) const = 0;
    virtual TextRange rowRange(int row) const = 0;
    virtual double x(int index) const = 0;
    /// The place between clusters that is nearest to `x`.
    virtual int indexAt(int row, double x) const = 0;
    virtual double width(int row) const = 0;
    /// `indexes` lie in the row.
    virtual void appendStretches(int row, TextRange indexes, Stretches& stretches) const = 0;
    /// Draws what meets the bounds and little more.
    virtual void paint(const TextPainting& painting, int row) const = 0;
    /// Attributes changed.
    virtual void forgetColors() const = 0;
};

} // namespace quelm
