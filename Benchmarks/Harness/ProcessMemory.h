#pragma once

#include <cstdint>
#include <optional>

/// The memory of this process.
namespace quelm::bench::processmemory {

/// Bytes in physical memory, whoever asked for them: the allocator's heap and mapped pages alike, in whole
/// pages. Absent where the system does not tell.
std::optional<std::int64_t> residentBytes();

/// The most of such bytes since the process began or since `restartPeak`. Absent where the system does not tell.
std::optional<std::int64_t> peakBytes();
void restartPeak();

/// Gives memory that the C library's allocator or our own holds unused back to the system, so that whoever
/// allocates next pays for first touches as a program does that has just started.
void returnFreeMemory();

} // namespace quelm::bench::processmemory
