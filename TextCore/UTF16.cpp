#include "TextCore/UTF16.h"

#include "TextCore/UTF8.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace quelm::utf16 {

std::string toUTF8(std::u16string_view units) {
    constexpr std::size_t longestOfAUnit = 3;
    std::string text;
    text.resize(units.size() * longestOfAUnit);
    char* out = text.data();
    for (std::size_t position = 0; position < units.size();) {
        const char16_t unit = units[position];
        if (unit < 0x80) {
            *out++ = static_cast<char>(unit);
            ++position;
            continue;
        }
        UChar32 scalar = 0;
        // NOLINTNEXTLINE(bugprone-inc-dec-in-conditions): inside the macro
        U16_NEXT_OR_FFFD(units.data(), position, units.size(), scalar);
        out = utf8::encode(static_cast<char32_t>(scalar), out);
    }
    text.resize(static_cast<std::size_t>(out - text.data()));
    return text;
}

void append(std::u16string& units, std::string_view utf8) {
    const std::size_t before = units.size();
    units.resize(before + utf8.size());
    char16_t* out = units.data() + before;
    for (std::size_t position = 0; position < utf8.size();) {
        const std::size_t ascii = utf8::asciiPrefixLength(utf8.substr(position));
        out = std::transform(utf8.begin() + static_cast<std::ptrdiff_t>(position),
                             utf8.begin() + static_cast<std::ptrdiff_t>(position + ascii), out,
                             [](char byte) { return static_cast<char16_t>(byte); });
        position += ascii;
        while (position < utf8.size() && static_cast<unsigned char>(utf8[position]) >= 0x80) {
            UChar32 scalar = 0;
            U8_NEXT_UNSAFE(utf8.data(), position, scalar);
            if (U_IS_BMP(scalar)) {
                *out++ = static_cast<char16_t>(scalar);
            } else {
                *out++ = U16_LEAD(scalar);
                *out++ = U16_TRAIL(scalar);
            }
        }
    }
    units.resize(static_cast<std::size_t>(out - units.data()));
}

} // namespace quelm::utf16
