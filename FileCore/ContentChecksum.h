#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace quelm {

/// What tells the contents of one file from another: their length and the 128 bits of XXH3 over them
/// (https://xxhash.com). It finds accidents, not attacks.
struct ContentChecksum {
    std::int64_t size = 0; // bytes
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    /// O(n), several GB/s.
    static ContentChecksum of(std::string_view bytes);

    friend bool operator==(const ContentChecksum&, const ContentChecksum&) = default;
};

/// The checksum of bytes that come in pieces. Movable, not copyable.
class ContentHasher {
public:
    ContentHasher();
    ContentHasher(ContentHasher&&) noexcept;
    ContentHasher& operator=(ContentHasher&&) noexcept;
    ~ContentHasher();

    void update(std::string_view bytes);
    /// Of all bytes so far.
    ContentChecksum checksum() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quelm
