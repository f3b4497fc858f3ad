#pragma once

#include <cstdint>
#include <string_view>

namespace quelm {

/// A hash of a key for tables in memory, the same for canonically equivalent keys. Well mixed in all its bits. A key of
/// ASCII, as nearly all are, is read once.
std::uint64_t keyHash(std::string_view key);

} // namespace quelm
