#include "Quelm/TextEngine/TextLayout.h"

#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextLayout+Implementation.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

/// Stretches that touch make one, and of all of them only what is between the bounds stays.
Stretches tidied(const Stretches& stretches, double left, double right) {
    constexpr double hair = 0.01;
    Stretches tidy;
    for (auto [from, to] : stretches) {
        from = std::max(from, left);
        to = std::min(to, right);
        if (from >= to)
            continue;
        if (!tidy.empty() && std::abs(tidy.back().second - from) < hair)
            tidy.back().second = to;
        else if (!tidy.empty() && std::abs(tidy.back().first - to) < hair)
            tidy.back().first = from;
        else
            tidy.emplace_back(from, to);
    }
    return tidy;
}

} // namespace

TextLayout::TextLayout(const TextStorage& storage, TextFont font)
    : implementation_(std::make_unique<Implementation>(storage, std::move(font))) {}

TextLayout::~TextLayout() = default;

const TextFont& TextLayout::font() const {
    return implementation_->font();
}

void TextLayout::setFont(const TextFont& font) {
    implementation_->setFont(font);
}

void TextLayout::setWrapWidth(std::optional<double> width) {
    implementation_->setWrapWidth(width);
}

void TextLayout::noteEdit(TextRange range, qint64 delta) {
    implementation_->noteEdit(range, delta);
}

void TextLayout::noteAttributes(TextRange range) {
    implementation_->noteAttributes(range);
}

void TextLayout::setComposition(const Composition& composition) {
    implementation_->setComposition(composition);
}

const TextLayout::Composition& TextLayout::composition() const {
    return implementation_->composition();
}

int TextLayout::cachedPartCount() const {
    return implementation_->cachedPartCount();
}

// Rows.

qint64 TextLayout::rowCount() const {
    return implementation_->rowCount();
}

qint64 TextLayout::rowOf(qint64 offset) const {
    return implementation_->numberOf(implementation_->rowAt(offset));
}

TextRange TextLayout::rowRange(qint64 row) const {
    const Implementation::Row found = implementation_->row(row);
    const TextRange range = found.range();
    if (!found.isLast())
        return range;
    return TextRange::between(range.location, implementation_->storage().lineContents(found.line).end());
}

qint64 TextLayout::lineOf(qint64 row) const {
    return implementation_->row(row).line;
}

qint64 TextLayout::firstRowOf(qint64 line) const {
    return implementation_->firstRowOf(line);
}

// Places in a row.

double TextLayout::x(qint64 offset) const {
    return implementation_->rowAt(offset).x(offset);
}

double TextLayout::caretX(qint64 offset) const {
    return implementation_->caretAt(offset).second;
}

qint64 TextLayout::caretRow(qint64 offset) const {
    return implementation_->numberOf(implementation_->caretAt(offset).first);
}

qint64 TextLayout::offsetAt(qint64 row, double x) const {
    const Implementation::Row found = implementation_->row(row);
    const TextRope& text = implementation_->storage().text();
    const TextRange range = found.range();
    // The end of a row that its line goes on after is the start of the next row.
    const qint64 last = found.isLast() ? range.end() : boundaries::previousCluster(text, range.end());

    const qint64 near = found.start + found.geometry->unitAt(found.index, x);
    qint64 offset = boundaries::clusterStart(text, near);
    if (offset < near) {
        const qint64 next = boundaries::nextCluster(text, offset);
        if (next <= last && std::abs(found.x(next) - x) < std::abs(found.x(offset) - x))
            offset = next;
    }
    return std::max(std::min(offset, last), range.location);
}

bool TextLayout::isBesideText(qint64 row, double x) const {
    return x < 0 || x > width(row);
}

double TextLayout::width(qint64 row) const {
    const Implementation::Row found = implementation_->row(row);
    return found.geometry->width(found.index);
}

std::vector<std::pair<double, double>> TextLayout::stretches(qint64 row, TextRange range, double left,
                                                             double right) const {
    const Implementation::Row found = implementation_->row(row);
    Stretches stretches;
    const TextRange common = found.range().intersection(range);
    if (!common.isEmpty())
        found.geometry->appendStretches(found.index, {common.location - found.start, common.length}, stretches);

    const TextStorage& storage = implementation_->storage();
    const qint64 lineFeed = storage.lineContents(found.line).end();
    if (found.isLast() && lineFeed < storage.length() && range.contains(lineFeed)) {
        const double end = found.geometry->width(found.index);
        stretches.emplace_back(end, end + font().advance());
    }
    return tidied(stretches, left, right);
}

void TextLayout::paint(QPainter& painter, qint64 row, QPointF origin, double left, double right,
                       const std::function<QColor(ColorRole)>& color) const {
    const Implementation::Row found = implementation_->row(row);
    const QPen pen = painter.pen();
    const RowPainting painting{painter,
                               origin + QPointF(0, font().ascent()),
                               left,
                               right,
                               implementation_->storage().attributes(),
                               found.start,
                               color,
                               implementation_->glyphs()};
    found.geometry->paint(painting, found.index);
    painter.setPen(pen);
}

} // namespace quelm
