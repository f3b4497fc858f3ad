#pragma once

#include "Quelm/TextEngine/CompositionOverlay.h"
#include "Quelm/TextEngine/LineCells.h"
#include "Quelm/TextEngine/TextLayout.h"

namespace quelm {

/// A long line that wraps. Its rows follow from counts of cells in the text before them, as many cells for every row;
/// from the place where that has a row begin, the row goes back a little to where a word begins, if one does there.
/// Only rows that are asked about are laid out, each as a short line of its own, and kept in a cache. Holds nothing
/// else, so that it is made anew for every question.
///
/// Invariants:
/// 1. Rows cover the line in order, and none is empty.
/// 2. A row begins between characters; and between grapheme clusters unless a cluster has more cells than rows.
/// 3. No row is wider than the width: what would be is drawn narrower.
class GridRows final : public LineGeometry {
public:
    struct Context {
        const TextStorage& storage;
        const TextFont& font;
        LayoutCache& cache;
        SharedClusterShapes& shapes;
        double wrapWidth;
    };

    /// `units` of the storage, of which there is one at least, are the line. The context and the overlay's text must
    /// outlive it.
    GridRows(Context context, qint64 line, TextRange units, std::optional<CompositionOverlay> overlay);

    qint64 length() const override { return units_.length; }
    qint64 rowCount() const override;
    qint64 rowOf(qint64 unit) const override;
    TextRange rowRange(qint64 row) const override { return laidOut(row)->units; }
    double x(qint64 unit) const override;
    qint64 unitAt(qint64 row, double x) const override;
    double width(qint64 row) const override { return laidOut(row)->width(); }
    void appendStretches(qint64 row, TextRange units, Stretches& stretches) const override;
    CaretPlace compositionCaret() const override;
    void paint(const RowPainting& painting, qint64 row) const override;
    void forgetColors() const override {}

    /// The cells that a row holds at most.
    static qint64 mostCells(double wrapWidth, const TextFont& font);
    /// The rows of a line of so many cells.
    static qint64 rowsOfCells(qint64 cells, double wrapWidth, const TextFont& font);
    /// How many rows at a line's start do not change when the text after so many cells does.
    static qint64 rowsBeforeCells(qint64 cells, double wrapWidth, const TextFont& font);

private:
    /// The cells from one row to the next, and how far back a row may begin to begin with a word.
    struct Pitch {
        Pitch(double wrapWidth, const TextFont& font);
        qint64 cells;
        qint64 slack;
    };
    struct Row final : LayoutPart {
        Row(TextRange units, std::shared_ptr<const LineGeometry> content, double wrapWidth)
            : units(units), content(std::move(content)),
              scale(std::min(wrapWidth / std::max(this->content->width(0), wrapWidth), 1.0)) {}
        void forgetColors() const override { content->forgetColors(); }
        double width() const { return content->width(0) * scale; }

        /// Of the line.
        const TextRange units;
        const std::shared_ptr<const LineGeometry> content;
        /// How much narrower than by nature it is.
        const double scale;
    };
    using RowPointer = std::shared_ptr<const Row>;

    qint64 rowStart(qint64 row) const;
    qint64 wordStart(qint64 after, qint64 unit) const;
    qint64 offset(qint64 unit) const { return units_.location + unit; }
    RowPointer laidOut(qint64 row) const;
    std::shared_ptr<const LineGeometry> madeContent(TextRange units) const;
    double overlayLeft() const;

    const Context context_;
    const qint64 line_;
    const TextRange units_;
    const std::optional<CompositionOverlay> overlay_;
    const LineCells cells_;
    const Pitch pitch_;
};

} // namespace quelm
