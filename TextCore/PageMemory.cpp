#include "TextCore/PageMemory.h"

#include <cstdint>
#include <new>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/mman.h>
#define QUELM_HAS_MMAP 1
#endif

namespace quelm::pagememory {

namespace {

constexpr std::size_t hugePage = std::size_t{2} << 20;
constexpr std::align_val_t lineAlignment{64};

constexpr std::size_t roundedUp(std::size_t size) { return (size + hugePage - 1) / hugePage * hugePage; }

} // namespace

#ifdef QUELM_HAS_MMAP

void* allocate(std::size_t size) {
    if (size < hugePage)
        return ::operator new(size, lineAlignment);
    // One huge page more than is needed leaves room to start at a multiple of its size; what is over goes back at once.
    const std::size_t wanted = roundedUp(size);
    void* mapped = ::mmap(nullptr, wanted + hugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    const auto address = reinterpret_cast<std::uintptr_t>(mapped);
    const std::uintptr_t start = roundedUp(address);
    if (start != address)
        ::munmap(mapped, start - address);
    if (const std::size_t after = address + hugePage - start)
        ::munmap(reinterpret_cast<void*>(start + wanted), after);
    void* memory = reinterpret_cast<void*>(start);
#ifdef MADV_HUGEPAGE
    ::madvise(memory, wanted, MADV_HUGEPAGE); // a wish: ordinary pages serve as well
#endif
    return memory;
}

void release(void* memory, std::size_t size) noexcept {
    if (size < hugePage)
        ::operator delete(memory, lineAlignment);
    else
        ::munmap(memory, roundedUp(size));
}

#else

void* allocate(std::size_t size) { return ::operator new(size, lineAlignment); }

void release(void* memory, std::size_t) noexcept { ::operator delete(memory, lineAlignment); }

#endif

} // namespace quelm::pagememory
