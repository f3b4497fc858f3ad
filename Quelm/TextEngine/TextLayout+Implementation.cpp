#include "Quelm/TextEngine/ClusterText.h"
#include "Quelm/TextEngine/PlainLine.h"
#include "Quelm/TextEngine/RowEstimates.h"
#include "Quelm/TextEngine/ShapedLine.h"
#include "Quelm/TextEngine/TextClusters.h"
#include "Quelm/TextEngine/TextLayout+Implementation.h"
#include "Quelm/TextEngine/WrappedText.h"

#include <algorithm>

namespace quelm {

namespace {

/// Takes the place of a line that was found to stand on the grid although it is short.
class OnGrid final : public LayoutPart {
public:
    void forgetColors() const override {}
};

} // namespace

TextLayout::Implementation::Implementation(const TextStorage& storage, TextFont font)
    : storage_(storage), font_(std::move(font)), lineCount_(storage.lineCount()),
      onGrid_(std::make_shared<const OnGrid>()), shapes_(font_) {}

void TextLayout::Implementation::forgetAll() {
    cache_.clear();
    areAllRowsExact_ = false;
    rows_.reset();
    if (wrapWidth_)
        rows_.emplace(estimatedRows(storage_.text(), {0, lineCount_}, *wrapWidth_, font_));
    estimateComposedLine();
}

void TextLayout::Implementation::setFont(const TextFont& font) {
    font_ = font;
    shapes_.setFont(font);
    forgetAll();
    setComposition(Composition(composition_));
}

void TextLayout::Implementation::setWrapWidth(std::optional<double> width) {
    if (width)
        width = std::max(*width, font_.advance());
    if (width == wrapWidth_)
        return;
    wrapWidth_ = width;
    forgetAll();
}

// Edits.

qint64 TextLayout::Implementation::partsBefore(qint64 lineStart, qint64 offset) const {
    if (!wrapWidth_)
        return GridLine::segmentsBefore(offset - lineStart);
    const qint64 cells = LineCells(storage_, TextRange::between(lineStart, offset)).count();
    return GridRows::rowsBeforeCells(cells, *wrapWidth_, font_);
}

void TextLayout::Implementation::noteEdit(TextRange range, qint64 delta) {
    const qint64 first = storage_.lineAt(range.location);
    const qint64 last = storage_.lineAt(range.end());
    const qint64 added = storage_.lineCount() - lineCount_;
    lineCount_ += added;

    const TextRange contents = storage_.lineContents(first);
    const bool staysLong = first == last && added == 0 && contents.length > segmentLength + 1;
    cache_.noteEditedLines(first, last - added, added, staysLong ? partsBefore(contents.location, range.location) : 0);
    if (rows_) {
        const LineSpan lines{first, last - first + 1};
        rows_->replace(first, lines.count - added, estimatedRows(storage_.text(), lines, *wrapWidth_, font_));
        areAllRowsExact_ = false;
    }
    if (composition_.offset > range.location)
        composition_.offset = std::max(range.location, composition_.offset + delta);
    estimateComposedLine();
}

void TextLayout::Implementation::noteAttributes(TextRange range) {
    cache_.forgetColors(storage_.lineAt(range.location), storage_.lineAt(range.end()));
}

void TextLayout::Implementation::forgetComposition() {
    if (composition_.text.isEmpty())
        return;
    const qint64 line = storage_.lineAt(composition_.offset);
    // Segments of a long line do not have it.
    if (storage_.lineContents(line).length <= segmentLength)
        cache_.dropLine(line);
    estimateComposedLine();
}

void TextLayout::Implementation::estimateComposedLine() {
    if (!rows_ || composition_.text.isEmpty())
        return;
    const qint64 line = storage_.lineAt(composition_.offset);
    rows_->set(line, LineRows::estimate(rows_->at(line).count));
    areAllRowsExact_ = false;
}

void TextLayout::Implementation::setComposition(const Composition& composition) {
    const Composition given = composition;
    forgetComposition();
    composition_ = given;
    composition_.caret = std::clamp(composition_.caret, 0, static_cast<int>(composition_.text.size()));
    forgetComposition();
    shapedComposition_.reset();
    if (!composition_.text.isEmpty())
        shapedComposition_.emplace(displayText(composition_.text).string, font_);
}

// Lines.

TextRange TextLayout::Implementation::shownUnits(qint64 line, qint64 start) const {
    const bool endsInLineFeed = line + 1 < lineCount_;
    qint64 end = endsInLineFeed ? storage_.lineStart(line + 1) - 1 : storage_.length();
    // A line may end with CR LF, of which neither is seen.
    if (endsInLineFeed && end > start) {
        const std::int64_t byte = storage_.text().summaryBeforeLine(line + 1).bytes - 1;
        const TextRope::Chunk chunk = storage_.text().chunkBefore(byte);
        if (chunk.bytes[static_cast<std::size_t>(byte - 1 - chunk.location)] == '\r')
            --end;
    }
    return TextRange::between(start, end);
}

std::optional<TextLayout::Composition> TextLayout::Implementation::compositionIn(TextRange units) const {
    if (composition_.text.isEmpty() || composition_.offset < units.location || composition_.offset > units.end())
        return std::nullopt;
    Composition within = composition_;
    within.offset -= units.location;
    return within;
}

TextLayout::Implementation::Geometry TextLayout::Implementation::madeGeometry(TextRange units,
                                                                              const Composition& composition) {
    QString text = storage_.string(units);
    const auto fits = [&](double width) { return !wrapWidth_ || width <= *wrapWidth_; };
    if (composition.text.isEmpty() && isPlainText(text) &&
        fits(font_.advance() * static_cast<double>(PlainLine::columnsOf(text))))
        return std::make_shared<const PlainLine>(std::move(text), font_);

    DisplayText display = displayText(std::move(text.insert(composition.offset, composition.text)));
    if (clusters::standAlone(display.string)) {
        auto alone = std::make_unique<const ClusterText>(display.string, shapes_.current());
        if (fits(alone->width(0)))
            return std::make_shared<const ShapedLine>(std::move(display), std::move(alone), font_, composition);
    }
    std::unique_ptr<const LineText> shaped;
    if (wrapWidth_)
        shaped = std::make_unique<const WrappedText>(display.string, font_, shapes_.current(), *wrapWidth_);
    else if (units.length <= joinedLength)
        shaped = std::make_unique<const ShapedText>(display.string, font_);
    else
        return nullptr;
    return std::make_shared<const ShapedLine>(std::move(display), std::move(shaped), font_, composition);
}

TextLayout::Implementation::Geometry TextLayout::Implementation::longLine(qint64 line, TextRange units) {
    std::optional<CompositionOverlay> overlay;
    if (const std::optional<Composition> composition = compositionIn(units))
        overlay = {composition->offset, composition->caret, &*shapedComposition_};
    if (wrapWidth_)
        return std::make_shared<const GridRows>(GridRows::Context{storage_, font_, cache_, shapes_, *wrapWidth_}, line,
                                                units, overlay);
    return std::make_shared<const GridLine>(GridLine::Context{storage_, font_, cache_, shapes_}, line, units, overlay);
}

TextLayout::Implementation::Geometry TextLayout::Implementation::geometry(qint64 line, qint64 start) {
    const LayoutCache::Key key{line, LayoutCache::wholeLine};
    const std::shared_ptr<const LayoutPart> kept = cache_.find(key);
    if (kept && kept != onGrid_)
        return std::static_pointer_cast<const LineGeometry>(kept);
    const TextRange units = shownUnits(line, start);
    if (kept || units.length > segmentLength)
        return longLine(line, units);
    Geometry made = madeGeometry(units, compositionIn(units).value_or(Composition()));
    if (!made) {
        cache_.insert(key, onGrid_);
        return longLine(line, units);
    }
    cache_.insert(key, made);
    return made;
}

// Rows.

void TextLayout::Implementation::look(qint64 line) {
    if (rows_ && !rows_->at(line).isExact)
        rows_->set(line, LineRows::exact(geometry(line, storage_.lineStart(line))->rowCount()));
}

void TextLayout::Implementation::lookAtShortText() {
    if (!rows_ || areAllRowsExact_ || storage_.length() > exactLength)
        return;
    for (qint64 line = 0; line < lineCount_; ++line)
        look(line);
    areAllRowsExact_ = true;
}

qint64 TextLayout::Implementation::rowCount() {
    lookAtShortText();
    return rows_ ? rows_->rowCount() : lineCount_;
}

qint64 TextLayout::Implementation::firstRowOf(qint64 line) {
    lookAtShortText();
    return rows_ ? rows_->rowsBefore(line) : line;
}

TextLayout::Implementation::Row TextLayout::Implementation::row(qint64 number) {
    const qint64 wanted = std::clamp<qint64>(number, 0, rowCount() - 1);
    WrappedRows::Place place{wanted, 0};
    if (rows_) {
        // A look may show that the line has fewer rows than was thought, and the row is of one after it.
        for (;;) {
            place = rows_->placeOf(std::min(wanted, rows_->rowCount() - 1));
            if (rows_->at(place.line).isExact)
                break;
            look(place.line);
        }
    }
    const qint64 start = storage_.lineStart(place.line);
    return {place.line, start, place.row, geometry(place.line, start)};
}

TextLayout::Implementation::Row TextLayout::Implementation::rowAt(qint64 offset) {
    lookAtShortText();
    const qint64 line = storage_.lineAt(offset);
    look(line);
    const qint64 start = storage_.lineStart(line);
    Row row{line, start, 0, geometry(line, start)};
    row.index = row.geometry->rowOf(row.unit(offset));
    return row;
}

std::pair<TextLayout::Implementation::Row, double> TextLayout::Implementation::caretAt(qint64 offset) {
    Row row = rowAt(offset);
    if (composition_.text.isEmpty() || offset != composition_.offset) {
        const double x = row.x(offset);
        return {std::move(row), x};
    }
    const LineGeometry::CaretPlace place = row.geometry->compositionCaret();
    row.index = place.row;
    return {std::move(row), place.x};
}

} // namespace quelm
