#include "Quelm/TextEngine/ReadingUnits.h"

#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextLayout.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace quelm {

/// The piece of a stretch with the character after `offset`, or at the end of the stretch the last one.
TextRange ReadingUnits::piece(TextRange whole, qint64 offset, qint64 longest) const {
    if (whole.length <= longest)
        return whole;
    const auto bound = [&](qint64 index) {
        const qint64 place = std::min(whole.location + index * longest, whole.end());
        const qint64 start = boundaries::clusterStart(storage_.text(), place);
        // Clusters have no greatest length; one that would empty the piece before it is cut as well.
        return place - start < longest / 2 ? start : storage_.text().summaryBeforeUTF16(place).utf16;
    };
    const qint64 last = (whole.length - 1) / longest;
    qint64 index = std::min((offset - whole.location) / longest, last);
    if (index < last && offset >= bound(index + 1))
        ++index;
    return TextRange::between(index == 0 ? whole.location : bound(index), bound(index + 1));
}

TextRange ReadingUnits::cluster(qint64 offset) const {
    const qint64 start = boundaries::clusterStart(storage_.text(), offset);
    return TextRange::between(start, boundaries::nextCluster(storage_.text(), start));
}

TextRange ReadingUnits::word(qint64 offset) const {
    if (offset == storage_.length())
        return {offset, 0};
    const qint64 start = boundaries::previousWord(storage_.text(), cluster(offset).end());
    const TextRange word = TextRange::between(start, boundaries::nextWord(storage_.text(), offset));
    // Where longer ones end depends on where one looks from.
    if (word.length <= longestUnit / 4)
        return word;
    return word.intersection(piece(storage_.lineRange({offset, 0}), offset, longestUnit / 2));
}

TextRange ReadingUnits::sentence(qint64 offset) const {
    const TextRange line = unitAt(offset, QAccessible::ParagraphBoundary);
    if (line.isEmpty())
        return line;
    const QString text = storage_.string(line);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, text);
    finder.setPosition(std::min<qsizetype>(offset - line.location, text.size() - 1));
    const qint64 start = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
    const qint64 end = finder.toNextBoundary();
    return TextRange::between(line.location + start, line.location + end);
}

TextRange ReadingUnits::row(qint64 offset) const {
    const qint64 row = layout_.rowOf(offset);
    TextRange units = layout_.rowRange(row);
    const bool hasLineFeed =
        units.end() < storage_.length() && units.end() == storage_.lineContents(layout_.lineOf(row)).end();
    units.length += hasLineFeed ? 1 : 0;
    return piece(units, offset);
}

TextRange ReadingUnits::unitAt(qint64 offset, QAccessible::TextBoundaryType kind) const {
    switch (kind) {
    case QAccessible::CharBoundary:
        return cluster(offset);
    case QAccessible::WordBoundary:
        return word(offset);
    case QAccessible::SentenceBoundary:
        return sentence(offset);
    case QAccessible::LineBoundary:
        return row(offset);
    case QAccessible::ParagraphBoundary:
        return piece(storage_.lineRange({offset, 0}), offset);
    case QAccessible::NoBoundary:
        break;
    }
    return piece({0, storage_.length()}, offset);
}

std::optional<TextRange> ReadingUnits::unitBefore(qint64 offset, QAccessible::TextBoundaryType kind) const {
    const qint64 start = unitAt(offset, kind).location;
    if (start == 0)
        return std::nullopt;
    return unitAt(start - 1, kind);
}

std::optional<TextRange> ReadingUnits::unitAfter(qint64 offset, QAccessible::TextBoundaryType kind) const {
    const TextRange unit = unitAt(offset, kind);
    const TextRange next = unitAt(unit.end(), kind);
    if (next.location < unit.end() || next == unit)
        return std::nullopt;
    return next;
}

} // namespace quelm
