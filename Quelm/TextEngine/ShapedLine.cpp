#include "Quelm/TextEngine/ShapedLine.h"

#include <QPainter>

#include <algorithm>

namespace quelm {

ShapedLine::ShapedLine(QString text, const TextFont& font, std::optional<double> wrapWidth,
                       const TextLayout::Composition& composition)
    : font_(font), composition_(composition),
      display_(displayText(std::move(text.insert(composition.offset, composition.text)))),
      shaped_(display_.string, font, wrapWidth) {}

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
    return unitOf(shaped_.indexAt(static_cast<int>(row), x));
}

void ShapedLine::appendStretches(qint64 row, TextRange units, Stretches& stretches) const {
    if (units.isEmpty())
        return;
    // A stretch that begins where the composition stands does not have it.
    const qint64 start =
        units.location == composition_.offset ? units.location + composition_.text.size() : indexOf(units.location);
    const TextRange indexes = TextRange::between(start, indexOf(units.end()));
    shaped_.appendStretches(static_cast<int>(row), indexRange(row).intersection(indexes), stretches);
}

LineGeometry::CaretPlace ShapedLine::compositionCaret() const {
    const int index = static_cast<int>(composition_.offset) + composition_.caret;
    return {shaped_.rowOf(index), shaped_.x(index)};
}

void ShapedLine::visitColors(const RowPainting& painting, TextRange indexes,
                             const ShapedText::VisitColor& visit) const {
    const qint64 compositionLength = composition_.text.size();
    const TextRange whole{0, shaped_.length()};
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
    shaped_.appendStretches(static_cast<int>(row), composed, stretches);
    for (const auto& [left, right] : stretches)
        painting.painter.fillRect(font_.underline(painting.origin, left, right), painting.color(ColorRole::text));
}

void ShapedLine::paint(const RowPainting& painting, qint64 row) const {
    const auto colorsOf = [&](TextRange indexes, const ShapedText::VisitColor& visit) {
        visitColors(painting, indexes, visit);
    };
    shaped_.paint(painting.painter, static_cast<int>(row), painting.origin, painting.left, painting.right, colorsOf,
                  painting.color);
    if (!composition_.text.isEmpty())
        underlineComposition(painting, row);
}

} // namespace quelm
