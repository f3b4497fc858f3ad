#include "Quelm/TextEngine/ShapedLine.h"

#include <QPainter>

#include <algorithm>

namespace quelm {

ShapedLine::ShapedLine(DisplayText display, std::unique_ptr<const LineText> text, const TextFont& font,
                       const TextLayout::Composition& composition)
    : font_(font), composition_(composition), display_(std::move(display)), text_(std::move(text)) {}

int ShapedLine::indexOf(qint64 unit) const {
    return static_cast<int>(unit <= composition_.offset ? unit : unit + composition_.text.size());
}

qint64 ShapedLine::unitOf(qint64 index) const {
    if (index <= composition_.offset)
        return index;
    return std::max(composition_.offset, index - composition_.text.size());
}

TextRange ShapedLine::rowRange(qint64 row) const {
    const TextRange indexes = indexRange(row);
    return TextRange::between(unitOf(indexes.location), unitOf(indexes.end()));
}

qint64 ShapedLine::unitAt(qint64 row, double x) const {
    return unitOf(text_->indexAt(static_cast<int>(row), x));
}

void ShapedLine::appendStretches(qint64 row, TextRange units, Stretches& stretches) const {
    if (units.isEmpty())
        return;
    // A stretch that begins where the composition stands does not have it.
    const qint64 start =
        units.location == composition_.offset ? units.location + composition_.text.size() : indexOf(units.location);
    const TextRange indexes = TextRange::between(start, indexOf(units.end()));
    text_->appendStretches(static_cast<int>(row), indexRange(row).intersection(indexes), stretches);
}

LineGeometry::CaretPlace ShapedLine::compositionCaret() const {
    const int index = static_cast<int>(composition_.offset) + composition_.caret;
    return {text_->rowOf(index), text_->x(index)};
}

void ShapedLine::visitColors(const RowPainting& painting, TextRange indexes,
                             const TextPainting::VisitColor& visit) const {
    const qint64 compositionLength = composition_.text.size();
    const TextRange whole{0, text_->length()};
    const TextRange before = indexes.intersection(TextRange::between(0, composition_.offset));
    forEachColor(display_, painting.attributes, painting.lineStart, before, visit);
    if (compositionLength == 0 && before.end() == indexes.end())
        return;
    const TextRange composed = indexes.intersection({composition_.offset, compositionLength});
    if (!composed.isEmpty())
        visit(composed.location, composed.length, ColorRole::text);
    const qint64 compositionEnd = composition_.offset + compositionLength;
    const TextRange after = indexes.intersection(TextRange::between(compositionEnd, whole.end()));
    forEachColor(display_, painting.attributes, painting.lineStart - compositionLength, after, visit);
}

void ShapedLine::underlineComposition(const RowPainting& painting, qint64 row) const {
    const TextRange composed = indexRange(row).intersection({composition_.offset, composition_.text.size()});
    Stretches stretches;
    text_->appendStretches(static_cast<int>(row), composed, stretches);
    for (const auto& [left, right] : stretches)
        painting.painter.fillRect(font_.underline(painting.origin, left, right), painting.color(ColorRole::text));
}

void ShapedLine::paint(const RowPainting& painting, qint64 row) const {
    const TextPainting::ColorsOf colorsOf = [&](TextRange indexes, const TextPainting::VisitColor& visit) {
        visitColors(painting, indexes, visit);
    };
    text_->paint(
        {painting.painter, painting.origin, painting.left, painting.right, colorsOf, painting.color, painting.glyphs},
        static_cast<int>(row));
    if (!composition_.text.isEmpty())
        underlineComposition(painting, row);
}

} // namespace quelm
