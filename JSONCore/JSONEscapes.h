#pragma once

#include <cstddef>
#include <string_view>

/// Which bytes a JSON string literal cannot hold as they are (RFC 8259, section 7).
namespace quelm::json {

/// Quotation mark, backslash and everything below 0x20.
constexpr bool needsEscape(unsigned char byte) {
    return byte < 0x20 || byte == '"' || byte == '\\';
}

/// Whether any byte of the text does. Many bytes at a time.
bool needsEscape(std::string_view text);

/// The number of leading bytes that do not. Many bytes at a time.
std::size_t plainPrefixLength(std::string_view text);

} // namespace quelm::json
