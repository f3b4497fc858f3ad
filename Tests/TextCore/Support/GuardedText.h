#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace quelm::test {

/// A copy of some bytes right before memory that stops the process when it is read. Where the system has no page
/// protection, the copy stands at the very end of its allocation, for a sanitizer to watch.
class GuardedText {
public:
    explicit GuardedText(std::string_view bytes, std::size_t guardSize = 1) {
#if __has_include(<sys/mman.h>)
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const auto roundedUp = [page](std::size_t size) { return (size + page - 1) / page * page; };
        const std::size_t readable = roundedUp(bytes.size());
        const std::size_t total = readable + roundedUp(guardSize);
        void* mapped = mmap(nullptr, total, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (mapped == MAP_FAILED)
            throw std::bad_alloc();
        memory_ = {static_cast<char*>(mapped), Unmap{total}};
        if (readable != 0 && mprotect(mapped, readable, PROT_READ | PROT_WRITE) != 0)
            throw std::bad_alloc();
        char* start = memory_.get() + readable - bytes.size();
#else
        memory_.reset(new char[bytes.size()]);
        char* start = memory_.get();
#endif
        if (!bytes.empty())
            std::memcpy(start, bytes.data(), bytes.size());
        bytes_ = {start, bytes.size()};
        guardSize_ = guardSize;
    }

    std::string_view view() const { return bytes_; }

    /// The bytes and as many after them as were to be guarded, which nobody may touch.
    std::string_view viewWithGuard() const { return {bytes_.data(), bytes_.size() + guardSize_}; }

private:
#if __has_include(<sys/mman.h>)
    struct Unmap {
        std::size_t size = 0;
        void operator()(char* memory) const { munmap(memory, size); }
    };
    std::unique_ptr<char, Unmap> memory_;
#else
    std::unique_ptr<char[]> memory_;
#endif
    std::string_view bytes_;
    std::size_t guardSize_ = 0;
};

} // namespace quelm::test
