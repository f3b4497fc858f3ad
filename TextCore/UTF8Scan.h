#pragma once

#include "TextCore/TextSummary.h"

#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

/// What the files of this folder share beneath the public functions of UTF8.h; all of it may be called from
/// any thread. The counts and prefixes look at many bytes at a time and read nothing beyond the end.
namespace quelm::utf8 {

/// The sums over well-formed text.
TextSummary summarize(std::string_view text);

/// The number of CR LF pairs.
std::size_t countCRLF(std::string_view bytes);

/// The number of characters of well-formed text: of bytes that continue no sequence.
std::size_t countCharacters(std::string_view text);

/// The first combining mark. The characters below it are called low here.
inline constexpr char32_t lowLimit = 0x300;

/// The number of bytes of the low characters that well-formed text begins with (`text.size()` when all are
/// low). The text may end within a character.
std::size_t lowPrefixLength(std::string_view text);

/// What some bytes begin with.
struct LeadingSequence {
    /// 1 to 4 when well formed, otherwise 1 to 3: a maximal subpart as the Unicode Standard defines it
    /// (chapter 3), the longest start of a well-formed sequence, or else one byte.
    std::size_t size;
    bool isWellFormed;
};

/// `bytes` must not be empty. Decides one sequence, a byte at a time (table 3-7 of the Unicode Standard).
inline LeadingSequence leadingSequence(const std::uint8_t* bytes, std::size_t count) {
    const std::uint8_t lead = bytes[0];
    if (lead < 0x80)
        return {1, true};
    if (lead < 0xC2 || lead > 0xF4)
        return {1, false};

    // Only the second byte's range depends on the lead byte's value.
    std::uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    std::uint8_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    for (std::size_t index = 1; index < size; ++index) {
        if (index == count || bytes[index] < lowest || bytes[index] > highest)
            return {index, false};
        lowest = 0x80;
        highest = 0xBF;
    }
    return {size, true};
}

/// The character that a text begins with.
struct LeadingScalar {
    /// U+FFFD for an ill-formed sequence.
    char32_t scalar;
    std::size_t size;
};

/// `text` must not be empty.
inline LeadingScalar leadingScalar(std::string_view text) {
    std::size_t size = 0;
    UChar32 scalar = 0;
    // NOLINTNEXTLINE(bugprone-inc-dec-in-conditions): inside the macro
    U8_NEXT_OR_FFFD(text.data(), size, text.size(), scalar);
    return {static_cast<char32_t>(scalar), size};
}

} // namespace quelm::utf8
