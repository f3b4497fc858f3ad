#pragma once

#include "Quelm/TextEngine/GridLine.h"
#include "Quelm/TextEngine/GridRows.h"
#include "Quelm/TextEngine/WrappedRows.h"

namespace quelm {

/// The lines of a layout: makes their geometry and keeps it, and knows their rows.
class TextLayout::Implementation {
public:
    Implementation(const TextStorage& storage, TextFont font);

    const TextStorage& storage() const { return storage_; }
    const TextFont& font() const { return font_; }
    void setFont(const TextFont& font);
    void setWrapWidth(std::optional<double> width);
    void noteEdit(TextRange range, qint64 delta);
    void noteAttributes(TextRange range);
    void setComposition(const Composition& composition);
    const Composition& composition() const { return composition_; }
    int cachedPartCount() const { return cache_.count(); }

    using Geometry = std::shared_ptr<const LineGeometry>;

    /// A row, with all that questions about it need.
    struct Row {
        qint64 line = 0;
        qint64 start = 0; // the offset of the line's first unit
        qint64 index = 0; // from the line's first row
        Geometry geometry;

        bool isLast() const { return index + 1 >= geometry->rowCount(); }
        double x(qint64 offset) const { return geometry->x(unit(offset)); }
        /// An offset of the line, line break included.
        qint64 unit(qint64 offset) const { return std::clamp<qint64>(offset - start, 0, geometry->length()); }
        /// Without what follows the last unit that is shown.
        TextRange range() const {
            const TextRange units = geometry->rowRange(index);
            return {start + units.location, units.length};
        }
    };
    Row row(qint64 number);
    Row rowAt(qint64 offset);
    /// The row and x of the caret at an offset.
    std::pair<Row, double> caretAt(qint64 offset);

    qint64 rowCount();
    qint64 firstRowOf(qint64 line);
    qint64 numberOf(const Row& row) { return firstRowOf(row.line) + row.index; }

    GridGlyphs& glyphs() { return glyphs_; }

private:
    Geometry geometry(qint64 line, qint64 start);
    /// Null for a line that is too long to be laid out as a whole, its characters being what they are.
    Geometry madeGeometry(TextRange units, const Composition& composition);
    Geometry longLine(qint64 line, TextRange units);
    /// How many parts at the start of a long line do not change when its text from an offset on does.
    qint64 partsBefore(qint64 lineStart, qint64 offset) const;
    TextRange shownUnits(qint64 line, qint64 start) const;
    /// The composition, if it is in these units: its offset from their start.
    std::optional<Composition> compositionIn(TextRange units) const;

    void forgetAll();
    void forgetComposition();
    /// The rows of the line with the composition are not those of its text.
    void estimateComposedLine();
    /// Makes the rows of a line exact.
    void look(qint64 line);
    void lookAtShortText();

    const TextStorage& storage_;
    TextFont font_;
    std::optional<double> wrapWidth_;
    qint64 lineCount_;
    /// While lines wrap.
    std::optional<WrappedRows> rows_;
    bool areAllRowsExact_ = false;
    Composition composition_;
    /// The composition by itself, for a long line.
    std::optional<ShapedText> shapedComposition_;
    /// Kept for lines whose geometry is made anew for every question.
    const std::shared_ptr<const LayoutPart> onGrid_;
    SharedClusterShapes shapes_;
    LayoutCache cache_;
    GridGlyphs glyphs_;
};

} // namespace quelm
