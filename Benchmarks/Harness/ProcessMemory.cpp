#include "Benchmarks/Harness/ProcessMemory.h"

#include "TextCore/PageMemory.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/mman.h>
#endif

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace quelm::bench::processmemory {

namespace {

struct Piece {
    void* memory;
    std::size_t size;
};

/// Takes a piece of every size that `pagememory` may keep, as often as it may keep one.
std::vector<Piece> takeKeptPieces() {
    constexpr std::size_t smallest = std::size_t{256} << 10;
    constexpr std::size_t largest = std::size_t{16} << 20;
    constexpr std::size_t mostPieces = 32;
    std::vector<Piece> pieces;
    for (std::size_t power = smallest; power <= largest; power *= 2)
        for (std::size_t size = power; size < 2 * power && size <= largest; size += power / 4)
            for (std::size_t left = std::min(mostPieces, pagememory::mostKept / size); left > 0; --left)
                pieces.push_back({pagememory::allocate(size), size});
    return pieces;
}

/// `pagememory` may keep them again, but without their pages.
void returnWithoutPages(const std::vector<Piece>& pieces) {
    for (const Piece& piece : pieces) {
#if defined(MADV_DONTNEED)
        ::madvise(piece.memory, piece.size, MADV_DONTNEED);
#endif
        pagememory::release(piece.memory, piece.size);
    }
}

} // namespace

std::optional<std::int64_t> residentBytes() {
    // The counters of /proc/self/statm are kept by processor and lag behind; this adds the pages up.
    std::ifstream pages("/proc/self/smaps_rollup");
    std::string word;
    while (pages >> word) {
        std::int64_t kilobytes = 0;
        if (word == "Rss:" && pages >> kilobytes)
            return kilobytes * 1024;
    }
    return std::nullopt;
}

void returnFreeMemory() {
    returnWithoutPages(takeKeptPieces());
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

} // namespace quelm::bench::processmemory
