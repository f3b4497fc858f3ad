#include "Quelm/TextEngine/GridLine.h"

#include "Quelm/TextEngine/TextBoundaries.h"

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

GridLine::GridLine(Context context, qint64 line, TextRange units, std::optional<CompositionOverlay> overlay)
    : context_(context), line_(line), units_(units), overlay_(overlay), cells_(context.storage, units) {}

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

// Places.

double GridLine::x(qint64 unit) const {
    const SegmentPointer found = segmentOf(unit);
    return gridX(found->start) + found->grid.x(unit - found->start);
}

qint64 GridLine::unitAt(qint64, double x) const {
    const double cell = std::clamp(x / context_.font.advance(), 0.0, static_cast<double>(cells_.count()));
    const SegmentPointer found = segmentOf(cells_.unitOf(static_cast<qint64>(cell)));
    return found->start + found->grid.unitAt(x - gridX(found->start));
}

void GridLine::appendStretches(qint64, TextRange units, Stretches& stretches) const {
    if (units.isEmpty())
        return;
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
    if (firstCell >= cells_.count())
        return;
    qint64 unit = cells_.unitOf(firstCell);
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

LineGeometry::CaretPlace GridLine::compositionCaret() const {
    if (!overlay_)
        return {};
    return {0, x(overlay_->unit) + overlay_->caretX()};
}

void GridLine::paint(const RowPainting& painting, qint64) const {
    paintSegments(painting);
    if (overlay_)
        overlay_->paint(painting, x(overlay_->unit), context_.font);
}

} // namespace quelm
