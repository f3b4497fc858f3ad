#include "Quelm/TextEngine/SelectionFollowing.h"

#include "TextCore/TextRope.h"

#include <algorithm>

namespace quelm {

namespace {

qint64 endOfLine(const TextRope& text, std::int64_t line) {
    if (line + 1 == text.lineCount())
        return text.utf16Count();
    constexpr int lineFeedLength = 1;
    return text.summaryBeforeLine(line + 1).utf16 - lineFeedLength;
}

qint64 sameLineAndColumn(qint64 offset, const TextRope& before, const TextRope& after) {
    const std::int64_t line = before.summaryBeforeUTF16(offset).lineFeeds;
    if (line >= after.lineCount())
        return after.utf16Count();
    const std::int64_t column = offset - before.summaryBeforeLine(line).utf16;
    return std::min<qint64>(after.summaryBeforeLine(line).utf16 + column, endOfLine(after, line));
}

qint64 shifted(qint64 offset, TextRange range, qint64 delta) {
    const qint64 endBefore = range.end() - delta;
    if (offset <= range.location)
        return offset;
    return offset >= endBefore ? offset + delta : std::min(offset, range.end());
}

} // namespace

TextSelection followedSelection(TextSelection selection, const TextRope& before, const TextRope& after, TextRange range,
                                qint64 delta) {
    const bool isWhole = range == TextRange{0, after.utf16Count()} && range.length - delta == before.utf16Count();
    const auto followed = [&](qint64 offset) {
        const qint64 place = isWhole ? sameLineAndColumn(offset, before, after) : shifted(offset, range, delta);
        return qint64{after.summaryBeforeUTF16(place).utf16};
    };
    return {followed(selection.anchor), followed(selection.caret)};
}

} // namespace quelm
