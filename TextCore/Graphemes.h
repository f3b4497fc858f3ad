#pragma once

#include <cstdint>
#include <string_view>

/// Extended grapheme clusters (Unicode Standard Annex #29): what a user calls a character.
/// All functions take well-formed UTF-8 and may be called from any thread. ASCII costs a vector compare a
/// block of bytes; only what is next to other text reaches ICU.
namespace quelm::graphemes {

/// The number of clusters. CR LF is one cluster; any other two adjacent ASCII characters are two.
std::int64_t count(std::string_view text);

/// The longest prefix of at most `clusters` clusters (0 or more). Looks at no more of the text than that
/// prefix and what decides its last boundary, whatever the length of the text.
std::string_view prefix(std::string_view text, std::int64_t clusters);

} // namespace quelm::graphemes
