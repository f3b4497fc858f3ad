#include "Quelm/TextEngine/GridRows.h"

#include "Quelm/TextEngine/ClusterText.h"
#include "Quelm/TextEngine/LineBreaks.h"
#include "Quelm/TextEngine/PlainLine.h"
#include "Quelm/TextEngine/ShapedLine.h"
#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextClusters.h"

#include <QPainter>

#include <algorithm>

namespace quelm {

namespace {

/// The cells of text to either side that a look for the start of a word takes into account.
constexpr qint64 contextCells = 16;

/// A row begins at most so far before its place, and no farther than this share of its cells.
constexpr qint64 mostSlack = 16;
constexpr qint64 slackShare = 4;

} // namespace

// Rows of a character must still hold one of two cells.
GridRows::Pitch::Pitch(double wrapWidth, const TextFont& font)
    : cells(mostCells(wrapWidth, font)), slack(std::clamp<qint64>(cells / slackShare, 1, mostSlack)) {
    cells = std::max<qint64>(cells - slack, 2);
}

qint64 GridRows::mostCells(double wrapWidth, const TextFont& font) {
    return std::max<qint64>(static_cast<qint64>(std::min(wrapWidth / font.advance(), 1e15)), 1);
}

qint64 GridRows::rowsOfCells(qint64 cells, double wrapWidth, const TextFont& font) {
    const qint64 perRow = Pitch(wrapWidth, font).cells;
    return std::max<qint64>((cells + perRow - 1) / perRow, 1);
}

qint64 GridRows::rowsBeforeCells(qint64 cells, double wrapWidth, const TextFont& font) {
    return std::max<qint64>(cells - 2 * contextCells, 0) / Pitch(wrapWidth, font).cells;
}

GridRows::GridRows(Context context, qint64 line, TextRange units, std::optional<CompositionOverlay> overlay)
    : context_(context), line_(line), units_(units), overlay_(overlay), cells_(context.storage, units),
      pitch_(context.wrapWidth, context.font) {}

// Where rows begin.

qint64 GridRows::rowCount() const {
    return rowsOfCells(cells_.count(), context_.wrapWidth, context_.font);
}

/// The last start of a word after a place, up to a unit; that place when there is none.
qint64 GridRows::wordStart(qint64 after, qint64 unit) const {
    const qint64 start = cells_.unitOf(cells_.before(after) - contextCells);
    const qint64 end = cells_.unitOf(cells_.before(unit) + contextCells);
    const QString around = displayText(context_.storage.string({offset(start), end - start})).string;
    const LineBreaks breaks(around);
    for (qsizetype place = unit - start; place > after - start; --place) {
        place = breaks.lastUpTo(place);
        if (place > after - start &&
            boundaries::clusterStart(context_.storage.text(), offset(start + place)) == offset(start + place))
            return start + place;
    }
    return after;
}

qint64 GridRows::rowStart(qint64 row) const {
    if (row <= 0 || row >= rowCount())
        return row <= 0 ? 0 : units_.length;
    const qint64 cell = row * pitch_.cells;
    const qint64 unit = cells_.unitOf(cell);
    const qint64 farthest = cells_.unitOf(cell - pitch_.slack);
    if (const qint64 word = wordStart(farthest, unit); word > farthest)
        return word;
    const qint64 cluster = boundaries::clusterStart(context_.storage.text(), offset(unit)) - units_.location;
    // So that the row before this one is not empty.
    return cluster > cells_.unitOf(cell - pitch_.cells) ? cluster : unit;
}

qint64 GridRows::rowOf(qint64 unit) const {
    const qint64 last = rowCount() - 1;
    const qint64 row = std::min(cells_.before(unit) / pitch_.cells, last);
    // The next row may begin a little before its place.
    return row < last && unit >= laidOut(row)->units.end() ? row + 1 : row;
}

// What a row is like.

std::shared_ptr<const LineGeometry> GridRows::madeContent(TextRange units) const {
    // Every character counts as many cells wherever it stands, tabs too.
    QString text = context_.storage.string({offset(units.location), units.length}).replace(u'\t', u' ');
    if (isPlainText(text))
        return std::make_shared<const PlainLine>(std::move(text), context_.font);
    DisplayText display = displayText(std::move(text));
    std::unique_ptr<const LineText> content;
    if (clusters::standAlone(display.string))
        content = std::make_unique<const ClusterText>(display.string, context_.shapes.current());
    else
        content = std::make_unique<const ShapedText>(display.string, context_.font);
    return std::make_shared<const ShapedLine>(std::move(display), std::move(content), context_.font,
                                              TextLayout::Composition());
}

GridRows::RowPointer GridRows::laidOut(qint64 row) const {
    const LayoutCache::Key key{line_, row};
    if (const std::shared_ptr<const LayoutPart> kept = context_.cache.find(key))
        return std::static_pointer_cast<const Row>(kept);
    const TextRange units = TextRange::between(rowStart(row), rowStart(row + 1));
    auto made = std::make_shared<const Row>(units, madeContent(units), context_.wrapWidth);
    context_.cache.insert(key, made);
    return made;
}

double GridRows::x(qint64 unit) const {
    const RowPointer row = laidOut(rowOf(unit));
    return row->scale * row->content->x(unit - row->units.location);
}

qint64 GridRows::unitAt(qint64 row, double x) const {
    const RowPointer of = laidOut(row);
    return of->units.location + of->content->unitAt(0, x / of->scale);
}

void GridRows::appendStretches(qint64 row, TextRange units, Stretches& stretches) const {
    const RowPointer of = laidOut(row);
    Stretches within;
    of->content->appendStretches(0, {units.location - of->units.location, units.length}, within);
    for (const auto& [left, right] : within)
        stretches.emplace_back(of->scale * left, of->scale * right);
}

/// Within the width, where what is composed is not itself wider.
double GridRows::overlayLeft() const {
    return std::max(std::min(x(overlay_->unit), context_.wrapWidth - overlay_->width()), 0.0);
}

LineGeometry::CaretPlace GridRows::compositionCaret() const {
    if (!overlay_)
        return {};
    return {rowOf(overlay_->unit), overlayLeft() + overlay_->caretX()};
}

void GridRows::paint(const RowPainting& painting, qint64 row) const {
    const RowPointer of = laidOut(row);
    RowPainting within{painting.painter,
                       painting.origin,
                       painting.left / of->scale,
                       painting.right / of->scale,
                       painting.attributes,
                       painting.lineStart + of->units.location,
                       painting.color,
                       painting.glyphs};
    if (of->scale == 1) {
        of->content->paint(within, 0);
    } else {
        within.origin = QPointF();
        painting.painter.save();
        painting.painter.translate(painting.origin);
        painting.painter.scale(of->scale, 1);
        of->content->paint(within, 0);
        painting.painter.restore();
    }
    if (overlay_ && rowOf(overlay_->unit) == row)
        overlay_->paint(painting, overlayLeft(), context_.font);
}

} // namespace quelm
