#include "TextCore/UTF8.h"

#include "TextCore/Check.h"
#include "TextCore/UTF8Scan.h"

#include <cstdint>

namespace quelm::utf8 {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

} // namespace

std::optional<std::string> repaired(std::string_view bytes) {
    if (isValid(bytes))
        return std::nullopt;

    std::string text;
    text.reserve(bytes.size());
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    std::size_t wellFormedFrom = 0;
    std::size_t position = 0;
    while (position < bytes.size()) {
        if (data[position] < 0x80) {
            position += asciiPrefixLength(bytes.substr(position));
            continue;
        }
        const LeadingSequence sequence = leadingSequence(data + position, bytes.size() - position);
        if (!sequence.isWellFormed) {
            text.append(bytes.substr(wellFormedFrom, position - wellFormedFrom));
            text.append(replacementCharacter);
            wellFormedFrom = position + sequence.size;
        }
        position += sequence.size;
    }
    text.append(bytes.substr(wellFormedFrom));
    return text;
}

char* encode(char32_t scalar, char* out) {
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    if (scalar < 0x80) {
        put(scalar);
    } else if (scalar < 0x800) {
        put(0xC0 | scalar >> 6);
        put(0x80 | (scalar & 0x3F));
    } else if (scalar < 0x10000) {
        require(scalar < 0xD800 || scalar > 0xDFFF, "a scalar value is not a surrogate");
        put(0xE0 | scalar >> 12);
        put(0x80 | (scalar >> 6 & 0x3F));
        put(0x80 | (scalar & 0x3F));
    } else {
        require(scalar <= 0x10FFFF, "a scalar value is at most U+10FFFF");
        put(0xF0 | scalar >> 18);
        put(0x80 | (scalar >> 12 & 0x3F));
        put(0x80 | (scalar >> 6 & 0x3F));
        put(0x80 | (scalar & 0x3F));
    }
    return out;
}

void append(std::string& text, char32_t scalar) {
    char form[longestForm];
    text.append(form, encode(scalar, form));
}

} // namespace quelm::utf8
