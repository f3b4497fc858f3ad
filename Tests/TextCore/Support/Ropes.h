#pragma once

#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/TextRope.h"

#include <algorithm>
#include <ostream>
#include <random>
#include <string_view>

namespace quelm {

/// Lets failed expectations print stretches.
// NOLINTNEXTLINE(readability-identifier-naming): the name that GoogleTest looks for.
inline void PrintTo(const ByteRange& range, std::ostream* stream) {
    *stream << range.location << "+" << range.length;
}

namespace test {

/// A text whose pieces are of odd lengths.
inline TextRope inPieces(std::mt19937& random, std::string_view text) {
    TextRope result;
    while (!text.empty()) {
        std::size_t length = std::min(text.size(), 1 + randomBelow(random, 7000));
        while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            ++length;
        result = result + TextRope(SharedText(text.substr(0, length)));
        text.remove_prefix(length);
    }
    return result;
}

/// The text in one piece of memory.
inline TextRope rope(std::string_view text) {
    return TextRope(SharedText(text));
}

} // namespace test
} // namespace quelm
