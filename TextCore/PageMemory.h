#pragma once

#include <cstddef>

/// Memory for large pieces: never zeroed by this code, on huge pages where the system grants them, because the first
/// touch of an ordinary page costs more than parsing the bytes that fill it. Some released pieces of middling size,
/// together no more than `mostKept` bytes, are kept for the next taker instead of being given back and touched anew:
/// text that is validated while it is typed is parsed again and again. Any thread.
namespace quelm::pagememory {

inline constexpr std::size_t mostKept = std::size_t{48} << 20;

/// At least `size` bytes, aligned to 64. Throws std::bad_alloc.
void* allocate(std::size_t size);

/// Gives back a piece that `allocate` returned for that same `size`.
void release(void* memory, std::size_t size) noexcept;

/// Gives the pieces that are kept back to the system: for measurements that are to begin with no memory at hand.
void releaseKept() noexcept;

} // namespace quelm::pagememory
