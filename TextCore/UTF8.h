#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// UTF-8 as RFC 3629 defines it: no overlong forms, no surrogates, nothing above U+10FFFF.
/// All functions are pure, take any bytes, and may be called from any thread.
namespace quelm::utf8 {

/// Whether the bytes are well-formed UTF-8. Nothing beyond their end is read.
/// Many bytes at a time, on the widest vectors the processor has.
bool isValid(std::string_view bytes);

/// Whether every byte is below 0x80. Many bytes at a time.
bool isASCII(std::string_view bytes);

/// The number of leading bytes below 0x80 (`bytes.size()` when all are). Many bytes at a time.
std::size_t asciiPrefixLength(std::string_view bytes);

/// The number of line feeds (0x0A). Many bytes at a time.
std::size_t countLineFeeds(std::string_view bytes);

/// The bytes with every maximal ill-formed subsequence replaced by one U+FFFD, as the Unicode Standard
/// (chapter 3, "U+FFFD Substitution of Maximal Subparts") recommends; absent when the bytes are valid as they
/// are.
std::optional<std::string> repaired(std::string_view bytes);

/// The most bytes in the UTF-8 form of a scalar value.
inline constexpr std::size_t longestForm = 4;

/// Writes the UTF-8 form of a scalar value (0 to 0x10FFFF without surrogates, otherwise a programming error) to `out`,
/// which has room for `longestForm` bytes, and returns where it ends.
char* encode(char32_t scalar, char* out);

/// Appends that form.
void append(std::string& text, char32_t scalar);

} // namespace quelm::utf8
