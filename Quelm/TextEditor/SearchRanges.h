#pragma once

#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/TextRope.h"

#include <vector>

namespace quelm {

/// The same stretch of a text in the units of the text engine. O(log n).
inline TextRange textRange(const TextRope& text, ByteRange range) {
    return TextRange::between(text.summaryBefore(range.location).utf16, text.summaryBefore(range.end()).utf16);
}

/// The same stretch of a text in bytes; an end within a surrogate pair is taken back to the pair's start. O(log n).
inline ByteRange byteRange(const TextRope& text, TextRange range) {
    return ByteRange::between(text.summaryBeforeUTF16(range.location).bytes,
                              text.summaryBeforeUTF16(range.end()).bytes);
}

/// The same for stretches in order that do not overlap. O(log n + what they span), and faster than one by one for many
/// near each other.
std::vector<TextRange> textRanges(const TextRope& text, const std::vector<ByteRange>& ranges);

} // namespace quelm
