#include "Quelm/TextEditor/TextLocation.h"

#include "TextCore/RopeGraphemes.h"
#include "TextCore/TextRope.h"

#include <algorithm>

namespace quelm {

namespace {

/// A line from 0, with the line feed that ends it.
ByteRange wholeLine(const TextRope& text, qint64 line) {
    const bool isLast = line + 1 == text.lineCount();
    return ByteRange::between(text.summaryBeforeLine(line).bytes,
                              isLast ? text.byteCount() : text.summaryBeforeLine(line + 1).bytes);
}

/// How many there are before one that is counted from 1.
qint64 before(qint64 ordinal) {
    return std::max<qint64>(ordinal, 1) - 1;
}

} // namespace

qint64 TextLocation::offset(const TextRope& text) const {
    const ByteRange range = wholeLine(text, std::min<qint64>(before(line), text.lineCount() - 1));
    return text.summaryBefore(offsetAfterClusters(text, range, before(column))).utf16;
}

} // namespace quelm
