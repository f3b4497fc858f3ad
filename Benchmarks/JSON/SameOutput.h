#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quelm::bench {

/// Where two texts of JSON that should be the same first differ, if they do. Two liberties are no difference:
/// a line feed at the end, and the case of the hexadecimal digits of an escape.
std::optional<std::size_t> firstDifference(std::string_view left, std::string_view right);

} // namespace quelm::bench
