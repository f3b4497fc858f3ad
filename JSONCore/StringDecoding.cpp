#include "JSONCore/StringDecoding.h"

#include "JSONCore/ParseMessages.h"
#include "TextCore/UTF8.h"

namespace quelm {

namespace {

/// The value of a hexadecimal digit, or -1.
int hexValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Reads the four digits of a Unicode escape and moves past them.
LiteralFault readHexDigits(const char*& place, const char* end, char32_t& unit) {
    constexpr int digitCount = 4;
    if (end - place < digitCount)
        return {parsemessages::incompleteUnicodeEscape, place};
    unit = 0;
    for (int i = 0; i < digitCount; ++i) {
        const int value = hexValue(place[i]);
        if (value < 0)
            return {parsemessages::invalidHexDigit, place};
        unit = unit * 16 + static_cast<char32_t>(value);
    }
    place += digitCount;
    return {};
}

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Reads a "\u" escape, or two that make a surrogate pair; `place` stands behind the "u", `backslash` at its backslash.
LiteralFault decodeUnicodeEscape(const char*& place, const char* end, const char* backslash, char*& out) {
    char32_t scalar = 0;
    if (const LiteralFault fault = readHexDigits(place, end, scalar); fault.message)
        return fault;
    if (isLowSurrogate(scalar))
        return {parsemessages::loneSurrogate, backslash};
    if (isHighSurrogate(scalar)) {
        if (end - place < 2 || place[0] != '\\' || place[1] != 'u')
            return {parsemessages::loneSurrogate, backslash};
        place += 2;
        char32_t low = 0;
        if (const LiteralFault fault = readHexDigits(place, end, low); fault.message)
            return fault;
        if (!isLowSurrogate(low))
            return {parsemessages::invalidSurrogate, backslash};
        scalar = 0x10000 + ((scalar - 0xD800) << 10) + (low - 0xDC00);
    }
    if (scalar > 0x10FFFF)
        return {parsemessages::invalidScalar, backslash};
    out = utf8::encode(scalar, out);
    return {};
}

} // namespace

LiteralFault decodeLongEscape(const char*& place, const char* end, const char* quote, char*& out) {
    const char* backslash = place;
    if (end - backslash < 2)
        return {parsemessages::unterminatedString, quote};
    if (backslash[1] != 'u')
        return {parsemessages::invalidEscape, backslash};
    const char* after = backslash + 2;
    const LiteralFault fault = decodeUnicodeEscape(after, end, backslash, out);
    if (!fault.message)
        place = after;
    return fault;
}

} // namespace quelm
