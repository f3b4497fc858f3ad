#include "Quelm/TextEngine/GridLine.h"

#include "Quelm/TextEngine/TextBoundaries.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

constexpr qint64 unitsPerSegment = TextLayout::segmentLength / 2;

/// How far back a segment may begin from its multiple, to begin with a cluster.
constexpr qint64 farthestStart = unitsPerSegment / 2;

/// How far the look for a segment's start may reach beyond its multiple.
constexpr qint64 lookAhead = 64;

} // namespace

GridLine::GridLine(Context context, qint64 line, TextRange units, std::optional<Overlay> overlay)
    : context_(context), line_(line), units_(units), overlay_(overlay),
      startCells_(context.storage.text().summaryBeforeUTF16(units.location).cells()),
      cells_(context.storage.text().summaryBeforeUTF16(units.end()).cells() - startCells_) {}

qint64 GridLine::cellsPerRow(double wrapWidth, const TextFont& font) {
    const auto cells = static_cast<qint64>(std::min(wrapWidth / font.advance(), 1e15));
    return cells < 2 ? 1 : cells / 2 * 2;
}

qint64 GridLine::rowsOfCells(qint64 cells, double wrapWidth, const TextFont& font) {
    const qint64 perRow = cellsPerRow(wrapWidth, font);
    return std::max<qint64>((cells + perRow - 1) / perRow, 1);
}

// Segments.

qint64 GridLine::segmentCount() const {
    return (units_.length + unitsPerSegment - 1) / unitsPerSegment;
}

qint64 GridLine::segmentsBefore(qint64 unit) {
    return std::max<qint64>(unit - lookAhead, 0) / unitsPerSegment;
}

qint64 GridLine::segmentStart(qint64 index) const {
    if (index == 0 || index >= segmentCount())
        return index == 0 ? 0 : units_.length;
    const TextRope& text = context_.storage.text();
    const qint64 multiple = text.summaryBeforeUTF16(units_.location + index * unitsPerSegment).utf16;
    const qint64 start = boundaries::clusterStart(text, multiple);
    return (multiple - start > farthestStart ? multiple : start) - units_.location;
}

GridLine::SegmentPointer GridLine::segment(qint64 index) const {
    const LayoutCache::Key key{line_, index};
    if (const std::shared_ptr<const LayoutPart> kept = context_.cache.find(key))
        return std::static_pointer_cast<const Segment>(kept);
    const qint64 start = segmentStart(index);
    const QString text = context_.storage.string({units_.location + start, segmentStart(index + 1) - start});
    auto made = std::make_shared<const Segment>(start, text, context_);
    context_.cache.insert(key, made);
    return made;
}

GridLine::SegmentPointer GridLine::segmentOf(qint64 unit) const {
    const qint64 last = segmentCount() - 1;
    const qint64 index = std::min(unit / unitsPerSegment, last);
    SegmentPointer found = segment(index);
    // Segments begin at their multiples or before them.
    return unit >= found->end() && index < last ? segment(index + 1) : found;
}

// The line as if it did not wrap.

qint64 GridLine::cellsBefore(qint64 unit) const {
    return context_.storage.text().summaryBeforeUTF16(units_.location + unit).cells() - startCells_;
}

qint64 GridLine::unitOfCell(qint64 cell) const {
    if (cell <= 0 || cell >= cells_)
        return cell <= 0 ? 0 : units_.length;
    return context_.storage.text().summaryBeforeCell(startCells_ + cell).utf16 - units_.location;
}

double GridLine::lineX(qint64 unit) const {
    const SegmentPointer found = segmentOf(unit);
    return gridX(found->start) + found->grid.x(unit - found->start);
}

qint64 GridLine::unitAtLineX(double x) const {
    const double cell = std::clamp(x / context_.font.advance(), 0.0, static_cast<double>(cells_));
    const SegmentPointer found = segmentOf(unitOfCell(static_cast<qint64>(cell)));
    return found->start + found->grid.unitAt(x - gridX(found->start));
}

void GridLine::appendLineStretches(TextRange units, Stretches& stretches) const {
    const SegmentPointer first = segmentOf(units.location);
    const SegmentPointer last = segmentOf(units.end() - 1);
    const auto append = [&](const Segment& segment) {
        const TextRange common = TextRange{segment.start, segment.grid.length()}.intersection(units);
        Stretches within;
        segment.grid.appendStretches({common.location - segment.start, common.length}, within);
        const double left = gridX(segment.start);
        for (const auto& [from, to] : within)
            stretches.emplace_back(left + from, left + to);
    };
    append(*first);
    if (first->end() < last->start)
        stretches.emplace_back(gridX(first->end()), gridX(last->start));
    if (first->start != last->start)
        append(*last);
}

void GridLine::paintSegments(const RowPainting& painting) const {
    const auto firstCell = static_cast<qint64>(std::max(painting.left / context_.font.advance(), 0.0));
    if (firstCell >= cells_)
        return;
    qint64 unit = unitOfCell(firstCell);
    double left = gridX(segmentOf(unit)->start);
    while (left < painting.right && unit < units_.length) {
        const SegmentPointer found = segmentOf(unit);
        found->grid.paint({painting.painter, painting.origin + QPointF(left, 0), std::max(painting.left - left, 0.0),
                           painting.right - left, painting.attributes, units_.location + found->start, painting.color,
                           painting.glyphs});
        left += found->grid.width();
        unit = found->end();
    }
    painting.glyphs.draw(painting.painter, painting.origin.y(), context_.font, painting.color);
}

// Rows.

qint64 GridLine::rowCount() const {
    return context_.wrapWidth ? rowsOfCells(cells_, *context_.wrapWidth, context_.font) : 1;
}

qint64 GridLine::rowStart(qint64 row) const {
    if (row <= 0 || row >= rowCount())
        return row <= 0 ? 0 : units_.length;
    const qint64 unit = unitOfCell(row * cellsPerRow(*context_.wrapWidth, context_.font));
    const qint64 start = boundaries::clusterStart(context_.storage.text(), units_.location + unit) - units_.location;
    return std::max<qint64>(start, 0);
}

qint64 GridLine::rowOf(qint64 unit) const {
    if (!context_.wrapWidth)
        return 0;
    const qint64 last = rowCount() - 1;
    qint64 row = std::min(cellsBefore(unit) / cellsPerRow(*context_.wrapWidth, context_.font), last);
    // A row that would begin within a cluster begins before it.
    while (row < last && rowStart(row + 1) <= unit)
        ++row;
    return row;
}

TextRange GridLine::rowRange(qint64 row) const {
    return TextRange::between(rowStart(row), rowStart(row + 1));
}

GridLine::RowPlace GridLine::place(qint64 row) const {
    if (!context_.wrapWidth)
        return {0, context_.font.advance() * static_cast<double>(cells_), 1};
    const TextRange units = rowRange(row);
    const double left = gridX(units.location);
    const double width = gridX(units.end()) - left;
    return {left, std::min(width, *context_.wrapWidth), width > *context_.wrapWidth ? *context_.wrapWidth / width : 1};
}

double GridLine::x(qint64 unit) const {
    if (!context_.wrapWidth)
        return lineX(unit);
    const RowPlace row = place(rowOf(unit));
    return std::clamp((lineX(unit) - row.left) * row.scale, 0.0, row.width);
}

qint64 GridLine::unitAt(qint64 row, double x) const {
    const RowPlace of = place(row);
    const TextRange units = rowRange(row);
    return std::clamp(unitAtLineX(x / of.scale + of.left), units.location, units.end());
}

double GridLine::width(qint64 row) const {
    return place(row).width;
}

void GridLine::appendStretches(qint64 row, TextRange units, Stretches& stretches) const {
    if (units.isEmpty())
        return;
    const RowPlace of = place(row);
    Stretches onLine;
    appendLineStretches(units, onLine);
    for (const auto& [from, to] : onLine) {
        const double left = std::clamp((from - of.left) * of.scale, 0.0, of.width);
        const double right = std::clamp((to - of.left) * of.scale, 0.0, of.width);
        if (left < right)
            stretches.emplace_back(left, right);
    }
}

LineGeometry::CaretPlace GridLine::compositionCaret() const {
    if (!overlay_)
        return {};
    return {rowOf(overlay_->unit), x(overlay_->unit) + overlay_->text->x(overlay_->caret)};
}

void GridLine::paintOverlay(const RowPainting& painting) const {
    const double left = x(overlay_->unit);
    const double width = overlay_->text->width(0);
    const QPointF place = painting.origin + QPointF(left, 0);
    painting.painter.fillRect(QRectF(place.x(), place.y() - context_.font.ascent(), width, context_.font.rowHeight()),
                              painting.color(ColorRole::contentBackground));
    const TextPainting::ColorsOf colorsOf = [](TextRange stretch, const TextPainting::VisitColor& visit) {
        visit(stretch.location, stretch.length, ColorRole::text);
    };
    overlay_->text->paint({painting.painter, place, painting.left - left, painting.right - left, colorsOf,
                           painting.color, painting.glyphs},
                          0);
    painting.painter.fillRect(context_.font.underline(place, 0, width), painting.color(ColorRole::text));
}

void GridLine::paint(const RowPainting& painting, qint64 row) const {
    if (!context_.wrapWidth) {
        paintSegments(painting);
    } else {
        const RowPlace of = place(row);
        QPainter& painter = painting.painter;
        painter.save();
        painter.translate(painting.origin.x(), 0);
        painter.scale(of.scale, 1);
        const double width = of.width / of.scale;
        const double left = std::max(painting.left / of.scale, 0.0);
        const double right = std::min(painting.right / of.scale, width);
        // A stretch that is shaped as a whole may go on in the next row.
        painter.setClipRect(QRectF(0, painting.origin.y() - context_.font.ascent(), width, context_.font.rowHeight()),
                            Qt::IntersectClip);
        // Beside the row's text there is that of another row.
        if (left < right)
            paintSegments({painter,
                           {-of.left, painting.origin.y()},
                           of.left + left,
                           of.left + right,
                           painting.attributes,
                           painting.lineStart,
                           painting.color,
                           painting.glyphs});
        painter.restore();
    }
    if (overlay_ && rowOf(overlay_->unit) == row)
        paintOverlay(painting);
}

} // namespace quelm
