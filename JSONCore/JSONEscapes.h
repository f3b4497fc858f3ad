#pragma once

#include <string_view>

/// Which bytes a JSON string literal cannot hold as they are (RFC 8259, section 7).
namespace quelm::json {

/// Quotation mark, backslash and everything below 0x20.
constexpr bool needsEscape(unsigned char byte) {
    return byte < 0x20 || byte == '"' || byte == '\\';
}

/// Whether any byte of the text does. Many bytes at a time.
bool needsEscape(std::string_view text);

} // namespace quelm::json
