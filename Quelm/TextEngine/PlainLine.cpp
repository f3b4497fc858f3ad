#include "Quelm/TextEngine/PlainLine.h"

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

qint64 columnAfter(QChar unit, qint64 column) {
    return unit == QChar(u'\t') ? column - column % TextFont::tabColumns + TextFont::tabColumns : column + 1;
}

} // namespace

PlainLine::PlainLine(QString text, TextFont font) : text_(std::move(text)), font_(std::move(font)) {
    if (!text_.contains(u'\t'))
        return;
    columns_.reserve(static_cast<std::size_t>(text_.size()) + 1);
    qint64 column = 0;
    for (const QChar unit : text_) {
        columns_.push_back(static_cast<qint32>(column));
        column = columnAfter(unit, column);
    }
    columns_.push_back(static_cast<qint32>(column));
}

qint64 PlainLine::columnsOf(QStringView text) {
    qint64 column = 0;
    for (const QChar unit : text)
        column = columnAfter(unit, column);
    return column;
}

qint64 PlainLine::columnOf(qint64 unit) const {
    return columns_.empty() ? unit : columns_[static_cast<std::size_t>(unit)];
}

double PlainLine::x(qint64 unit) const {
    return font_.advance() * static_cast<double>(columnOf(unit));
}

qint64 PlainLine::unitAt(qint64, double x) const {
    const double column = x / font_.advance();
    if (columns_.empty())
        return std::clamp(std::llround(column), qlonglong{0}, length());
    const auto after = std::ranges::lower_bound(columns_, column);
    if (after == columns_.begin())
        return 0;
    if (after == columns_.end())
        return length();
    const auto unit = after - columns_.begin();
    return column - *(after - 1) < *after - column ? unit - 1 : unit;
}

void PlainLine::appendStretches(qint64, TextRange units, Stretches& stretches) const {
    if (!units.isEmpty())
        stretches.emplace_back(x(units.location), x(units.end()));
}

void PlainLine::paint(const RowPainting& painting, qint64) const {
    const qint64 first = std::max(unitAt(0, painting.left) - 1, qint64{0});
    const qint64 end = std::min(unitAt(0, painting.right) + 1, length());
    const TextRange visible = TextRange::between(painting.lineStart + first, painting.lineStart + std::max(first, end));
    painting.attributes.forEach(visible, [&](const AttributeRuns::PlacedRun& placed) {
        const ColorRole role = placed.run.attributes.foreground;
        for (qint64 offset = placed.location; offset < placed.end(); ++offset) {
            const qint64 unit = offset - painting.lineStart;
            painting.glyphs.add(role, text_.at(unit).unicode(), painting.origin.x() + x(unit), font_);
        }
    });
    painting.glyphs.draw(painting.painter, painting.origin.y(), font_, painting.color);
}

} // namespace quelm
