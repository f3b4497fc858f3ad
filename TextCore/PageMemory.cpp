#include "TextCore/PageMemory.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <mutex>
#include <new>
#include <type_traits>

// Under AddressSanitizer all pieces come from its heap, so that a use after release is found.
#if (defined(__unix__) || defined(__APPLE__)) && !defined(__SANITIZE_ADDRESS__)
#include <sys/mman.h>
#define QUELM_HAS_MMAP 1
#endif

namespace quelm::pagememory {

namespace {

constexpr std::align_val_t lineAlignment{64};

#ifdef QUELM_HAS_MMAP

constexpr std::size_t hugePage = std::size_t{2} << 20;
/// From this size on, pieces are mapped; smaller ones come from the heap.
constexpr std::size_t smallestMapped = std::size_t{256} << 10;
/// From this size on, pieces are made of whole huge pages: one of them costs about as much as the ordinary pages of a
/// quarter of it.
constexpr std::size_t smallestHuge = hugePage / 4;
constexpr std::size_t largestKept = mostKept / 3;

/// The size that is mapped for a piece of at least `smallestMapped` bytes: quarters of a power of two, so that pieces
/// of similar size can stand in for each other.
constexpr std::size_t mappedSize(std::size_t size) {
    const std::size_t step = std::bit_floor(size) / 4;
    const std::size_t rounded = (size + step - 1) / step * step;
    return size < smallestHuge ? rounded : (rounded + hugePage - 1) / hugePage * hugePage;
}

void* mapPages(std::size_t size) {
    // A huge page more than is needed leaves room to start at a multiple of its size; what is over goes back at once.
    const std::size_t slack = size % hugePage == 0 ? hugePage : 0;
    void* mapped =
        ::mmap(nullptr, size + slack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    if (slack == 0)
        return mapped;
    const auto address = reinterpret_cast<std::uintptr_t>(mapped);
    const std::uintptr_t start = (address + hugePage - 1) / hugePage * hugePage;
    if (start != address)
        ::munmap(mapped, start - address);
    if (const std::size_t after = address + slack - start)
        ::munmap(reinterpret_cast<void*>(start + size), after);
    void* memory = reinterpret_cast<void*>(start);
#ifdef MADV_HUGEPAGE
    ::madvise(memory, size, MADV_HUGEPAGE); // a wish: ordinary pages serve as well
#endif
    return memory;
}

/// Released pieces that wait for the next taker.
class Kept {
public:
    /// A piece of exactly that mapped size, or null.
    void* take(std::size_t size) {
        const std::scoped_lock lock(mutex_);
        const auto end = pieces_.begin() + static_cast<std::ptrdiff_t>(count_);
        const auto found =
            std::find_if(pieces_.begin(), end, [size](const Piece& piece) { return piece.size == size; });
        if (found == end)
            return nullptr;
        void* memory = found->memory;
        std::move(found + 1, end, found);
        --count_;
        bytes_ -= size;
        return memory;
    }

    void giveBackAll() {
        const std::scoped_lock lock(mutex_);
        while (count_ != 0)
            giveBackOldest();
    }

    /// Keeps a piece; those kept longest go back to the system to make room for it.
    void keep(void* memory, std::size_t size) {
        const std::scoped_lock lock(mutex_);
        while (count_ == pieces_.size() || bytes_ + size > mostKept)
            giveBackOldest();
        pieces_[count_++] = {memory, size};
        bytes_ += size;
    }

private:
    struct Piece {
        void* memory;
        std::size_t size;
    };

    void giveBackOldest() {
        ::munmap(pieces_[0].memory, pieces_[0].size);
        bytes_ -= pieces_[0].size;
        std::move(pieces_.begin() + 1, pieces_.begin() + static_cast<std::ptrdiff_t>(count_), pieces_.begin());
        --count_;
    }

    std::mutex mutex_;
    std::array<Piece, 32> pieces_{};
    std::size_t count_ = 0;
    std::size_t bytes_ = 0;
};

/// Never destroyed, as nothing in it needs to be: texts may outlive every static object.
Kept& kept() {
    static constinit Kept pieces;
    static_assert(std::is_trivially_destructible_v<Kept>);
    return pieces;
}

#endif

} // namespace

#ifdef QUELM_HAS_MMAP

void* allocate(std::size_t size) {
    if (size < smallestMapped)
        return ::operator new(size, lineAlignment);
    const std::size_t mapped = mappedSize(size);
    void* memory = kept().take(mapped);
    return memory ? memory : mapPages(mapped);
}

void release(void* memory, std::size_t size) noexcept {
    if (size < smallestMapped)
        ::operator delete(memory, lineAlignment);
    else if (const std::size_t mapped = mappedSize(size); mapped <= largestKept)
        kept().keep(memory, mapped);
    else
        ::munmap(memory, mapped);
}

void releaseKept() noexcept {
    kept().giveBackAll();
}

#else

void releaseKept() noexcept {}

void* allocate(std::size_t size) {
    return ::operator new(size, lineAlignment);
}

void release(void* memory, std::size_t) noexcept {
    ::operator delete(memory, lineAlignment);
}

#endif

} // namespace quelm::pagememory
