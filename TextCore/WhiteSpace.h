#pragma once

#include <string_view>

namespace quelm {

/// The text without leading and trailing white space: characters with the Unicode property White_Space, line
/// breaks among them. `text` must be well-formed UTF-8; the result is a part of it.
std::string_view trimmedWhiteSpace(std::string_view text);

} // namespace quelm
