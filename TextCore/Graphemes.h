#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Extended grapheme clusters (Unicode Standard Annex #29): what a user calls a character.
/// All functions take well-formed UTF-8 of any length and may be called from any thread. Characters below
/// U+0300 cost a few vector instructions a block of bytes, most others a look-up; only marks, joiners and the
/// like, and what is next to them, reach ICU. The boundaries are those of ICU's rules over the whole text,
/// except that a cluster of more than 1 GiB counts once every gibibyte.
namespace quelm::graphemes {

/// The number of clusters: O(length). CR LF is one cluster; any other two adjacent ASCII characters are two.
std::int64_t count(std::string_view text);

/// The longest prefix of at most `clusters` clusters (0 or more, otherwise a programming error). Looks at no
/// more of the text than that prefix, what decides its last boundary, and a kilobyte, whatever the length of
/// the text.
std::string_view prefix(std::string_view text, std::int64_t clusters);

/// The last place strictly within the text that is a boundary whatever the text is part of, as the two characters
/// beside it tell; 0 when the last `searched` bytes show none.
std::size_t lastSureBoundary(std::string_view text, std::size_t searched);

} // namespace quelm::graphemes
