#include "Quelm/TextEditor/LineStarts.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <utility>

namespace quelm {

namespace {

qint64 sum(qint64 one, qint64 other) {
    qint64 result = 0;
    require(!__builtin_add_overflow(one, other, &result), "offsets of a text fit in 64 bits");
    return result;
}

qint64 difference(qint64 one, qint64 other) {
    qint64 result = 0;
    require(!__builtin_sub_overflow(one, other, &result), "offsets of a text fit in 64 bits");
    return result;
}

} // namespace

qint64 LineStarts::countUpTo(qint64 offset) const {
    if (offset < 0)
        return 0;
    return text_.summaryBeforeUTF16(std::min<qint64>(offset, text_.utf16Count())).lineFeeds + 1;
}

void LineStarts::noteEdit(TextRange range, qint64 delta, TextRope text) {
    // The entries after what was replaced move by delta. The last of them moves furthest.
    const qint64 oldEnd = difference(sum(range.location, range.length), delta);
    const qint64 last = at(count() - 1);
    if (last > oldEnd)
        sum(last, delta);
    text_ = std::move(text);
}

} // namespace quelm
