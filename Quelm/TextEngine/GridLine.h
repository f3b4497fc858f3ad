#pragma once

#include "Quelm/TextEngine/GridSegment.h"
#include "Quelm/TextEngine/TextLayout.h"

namespace quelm {

/// A long line: a view of the grid that its characters stand on. Makes its segments when they are asked about, and
/// keeps them in a cache; holds nothing else, so that it is made anew for every question.
class GridLine final : public LineGeometry {
public:
    /// The text of an input method over a line.
    struct Overlay {
        /// A unit of the line.
        qint64 unit = 0;
        int caret = 0;
        const ShapedText* text = nullptr;
    };
    struct Context {
        const TextStorage& storage;
        const TextFont& font;
        LayoutCache& cache;
        SharedClusterShapes& shapes;
        std::optional<double> wrapWidth;
    };

    /// `units` of the storage are the line. The context and the overlay's text must outlive it.
    GridLine(Context context, qint64 line, TextRange units, std::optional<Overlay> overlay);

    qint64 length() const override { return units_.length; }
    qint64 rowCount() const override;
    qint64 rowOf(qint64 unit) const override;
    TextRange rowRange(qint64 row) const override;
    double x(qint64 unit) const override;
    qint64 unitAt(qint64 row, double x) const override;
    double width(qint64 row) const override;
    void appendStretches(qint64 row, TextRange units, Stretches& stretches) const override;
    CaretPlace compositionCaret() const override;
    void paint(const RowPainting& painting, qint64 row) const override;
    void forgetColors() const override {}

    /// The cells of a wrapped row. Even where it can be, for characters of two cells.
    static qint64 cellsPerRow(double wrapWidth, const TextFont& font);
    static qint64 rowsOfCells(qint64 cells, double wrapWidth, const TextFont& font);

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

    qint64 cellsBefore(qint64 unit) const;
    qint64 unitOfCell(qint64 cell) const;
    double gridX(qint64 unit) const { return context_.font.advance() * static_cast<double>(cellsBefore(unit)); }

    // In x from the start of the line, as if it did not wrap.
    double lineX(qint64 unit) const;
    qint64 unitAtLineX(double x) const;
    void appendLineStretches(TextRange units, Stretches& stretches) const;
    void paintSegments(const RowPainting& painting) const;

    qint64 rowStart(qint64 row) const;
    /// How a row's x follows from that of the line.
    struct RowPlace {
        double left = 0;
        double width = 0;
        double scale = 1;
    };
    RowPlace place(qint64 row) const;
    void paintOverlay(const RowPainting& painting) const;

    const Context context_;
    const qint64 line_;
    const TextRange units_;
    const std::optional<Overlay> overlay_;
    const qint64 startCells_;
    const qint64 cells_;
};

} // namespace quelm
