#include "TextCore/WhiteSpace.h"

#include "TextCore/UTF8Scan.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quelm {

namespace {

bool isASCIIWhiteSpace(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/// The size of the white-space character at the front, 0 when there is none.
std::size_t whiteSpaceAtFront(std::string_view text) {
    if (text.empty())
        return 0;
    if (U8_IS_SINGLE(text.front()))
        return isASCIIWhiteSpace(text.front()) ? 1 : 0;
    const auto [scalar, size] = utf8::leadingScalar(text);
    return u_isUWhiteSpace(static_cast<UChar32>(scalar)) ? size : 0;
}

/// The size of the white-space character at the back, 0 when there is none.
std::size_t whiteSpaceAtBack(std::string_view text) {
    if (text.empty())
        return 0;
    if (U8_IS_SINGLE(text.back()))
        return isASCIIWhiteSpace(text.back()) ? 1 : 0;
    // ICU counts in 32 bits here, so it sees the last character alone.
    const std::string_view last = text.substr(text.size() - std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    auto position = static_cast<std::int32_t>(last.size());
    UChar32 scalar;
    U8_PREV(last.data(), 0, position, scalar);
    return scalar >= 0 && u_isUWhiteSpace(scalar) ? last.size() - static_cast<std::size_t>(position) : 0;
}

} // namespace

std::string_view trimmedWhiteSpace(std::string_view text) {
    while (const std::size_t size = whiteSpaceAtFront(text))
        text.remove_prefix(size);
    while (const std::size_t size = whiteSpaceAtBack(text))
        text.remove_suffix(size);
    return text;
}

} // namespace quelm
