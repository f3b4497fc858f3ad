#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quelm {

/// How much memory, in bytes, programs can still take before the system is short of it; absent when it does not tell.
/// For any thread.
std::optional<std::int64_t> availableMemory();

/// The same from the text of /proc/meminfo.
std::optional<std::int64_t> availableMemoryIn(std::string_view meminfo);

} // namespace quelm
