#pragma once

#include "Quelm/TextEngine/CompositionOverlay.h"
#include "Quelm/TextEngine/GridSegment.h"
#include "Quelm/TextEngine/LineCells.h"
#include "Quelm/TextEngine/TextLayout.h"

namespace quelm {

/// A long line in one row: a view of the grid that its characters stand on. Makes its segments when they are asked
/// about, and keeps them in a cache; holds nothing else, so that it is made anew for every question.
class GridLine final : public LineGeometry {
public:
    struct Context {
        const TextStorage& storage;
        const TextFont& font;
        LayoutCache& cache;
        SharedClusterShapes& shapes;
    };

    /// `units` of the storage are the line. The context and the overlay's text must outlive it.
    GridLine(Context context, qint64 line, TextRange units, std::optional<CompositionOverlay> overlay);

    qint64 length() const override { return units_.length; }
    qint64 rowCount() const override { return 1; }
    qint64 rowOf(qint64) const override { return 0; }
    TextRange rowRange(qint64) const override { return {0, length()}; }
    double x(qint64 unit) const override;
    qint64 unitAt(qint64 row, double x) const override;
    double width(qint64) const override { return context_.font.advance() * static_cast<double>(cells_.count()); }
    void appendStretches(qint64 row, TextRange units, Stretches& stretches) const override;
    CaretPlace compositionCaret() const override;
    void paint(const RowPainting& painting, qint64 row) const override;
    void forgetColors() const override {}

    /// How many segments at the line's start do not change when the text from `unit` on does.
    static qint64 segmentsBefore(qint64 unit);

private:
    struct Segment final : LayoutPart {
        Segment(qint64 first, QString text, const Context& context)
            : start(first), grid(std::move(text), context.font, context.shapes) {}
        void forgetColors() const override { grid.forgetColors(); }
        qint64 end() const { return start + grid.length(); }

        const qint64 start;
        const GridSegment grid;
    };
    using SegmentPointer = std::shared_ptr<const Segment>;

    qint64 segmentCount() const;
    qint64 segmentStart(qint64 index) const;
    SegmentPointer segment(qint64 index) const;
    SegmentPointer segmentOf(qint64 unit) const;

    double gridX(qint64 unit) const { return context_.font.advance() * static_cast<double>(cells_.before(unit)); }
    void paintSegments(const RowPainting& painting) const;

    const Context context_;
    const qint64 line_;
    const TextRange units_;
    const std::optional<CompositionOverlay> overlay_;
    const LineCells cells_;
};

} // namespace quelm
