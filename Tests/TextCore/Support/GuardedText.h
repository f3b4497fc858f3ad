#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace quelm::test {

/// A copy of some bytes right before memory that stops the process when it is read. Where the system has no
/// page protection, the copy stands at the very end of its allocation, for a sanitizer to watch.
class GuardedText {
public:
    /// At least `guardSize` bytes after the copy may not be touched.
    explicit GuardedText(std::string_view bytes, std::size_t guardSize = 1) : guardSize_(guardSize) {
#if __has_include(<sys/mman.h>)
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const auto wholePages = [page](std::size_t size) { return (size + page - 1) / page * page; };
        const std::size_t readable = wholePages(bytes.size());
        mapped_ = readable + wholePages(guardSize);
        void* memory = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED)
            throw std::bad_alloc();
        memory_ = static_cast<char*>(memory);
        if (readable != 0 && mprotect(memory_, readable, PROT_READ | PROT_WRITE) != 0)
            throw std::bad_alloc();
        char* copy = memory_ + readable - bytes.size();
#else
        memory_ = new char[bytes.size()];
        char* copy = memory_;
#endif
        if (!bytes.empty())
            std::memcpy(copy, bytes.data(), bytes.size());
        bytes_ = {copy, bytes.size()};
    }

    ~GuardedText() {
#if __has_include(<sys/mman.h>)
        munmap(memory_, mapped_);
#else
        delete[] memory_;
#endif
    }

    GuardedText(const GuardedText&) = delete;
    GuardedText& operator=(const GuardedText&) = delete;

    std::string_view view() const { return bytes_; }

    /// The bytes and as many after them as were to be guarded.
    std::string_view viewWithGuard() const { return {bytes_.data(), bytes_.size() + guardSize_}; }

private:
    char* memory_ = nullptr;
    std::size_t mapped_ = 0;
    std::size_t guardSize_ = 0;
    std::string_view bytes_;
};

} // namespace quelm::test
