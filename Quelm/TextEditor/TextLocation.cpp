#include "Quelm/TextEditor/TextLocation.h"

#include "TextCore/RopeGraphemes.h"
#include "TextCore/TextRope.h"

#include <algorithm>

namespace quelm {

namespace {

/// In bytes. Reading them takes some milliseconds, and 30 if all are joined emoji.
constexpr std::int64_t longestReadAtOnce = std::int64_t{1} << 20;

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

/// The line that a line from 1 stands for.
ByteRange lineNumbered(const TextRope& text, qint64 number) {
    return wholeLine(text, std::min<qint64>(before(number), text.lineCount() - 1));
}

} // namespace

qint64 TextLocation::offset(const TextRope& text, const std::stop_token& stop) const {
    const ByteRange range = lineNumbered(text, line);
    return text.summaryBefore(offsetAfterClusters(text, range, before(column), stop)).utf16;
}

bool TextLocation::takesLong(const TextRope& text) const {
    const ByteRange range = lineNumbered(text, line);
    if (range.length <= longestReadAtOnce || before(column) == 0)
        return false;
    // A carriage return makes a cluster with the line feed that ends the line; more of them are looked for.
    const TextSummary summary = text.summary(range);
    return !summary.isASCII() || summary.carriageReturns > 1;
}

} // namespace quelm
