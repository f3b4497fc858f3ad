#pragma once

#include <string>
#include <string_view>

/// UTF-16 in memory, as user interfaces hold text. The functions are pure and may be called from any thread.
namespace quelm::utf16 {

/// The text in UTF-8. Each lone surrogate becomes U+FFFD, one unit like itself. O(n).
std::string toUTF8(std::u16string_view units);

/// Appends well-formed UTF-8 that neither begins nor ends within a character. O(n).
void append(std::u16string& units, std::string_view utf8);

} // namespace quelm::utf16
