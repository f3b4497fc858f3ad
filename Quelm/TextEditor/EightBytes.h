#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace quelm {

/// Eight bytes of UTF-8 that are looked at together.
class EightBytes {
public:
    static constexpr int count = 8;

    explicit EightBytes(const char* bytes) {
        std::memcpy(&word_, bytes, sizeof word_);
        if constexpr (std::endian::native == std::endian::big)
            word_ = std::byteswap(word_);
    }

    /// A set whose first member is the first of the bytes that equals `byte`; others of its members may not.
    std::uint64_t matches(char byte) const {
        const std::uint64_t difference = word_ ^ (inEach * static_cast<unsigned char>(byte));
        return (difference - inEach) & ~difference & (inEach << 7);
    }

    /// The index of the first member of such a set, which is not 0.
    static int first(std::uint64_t set) { return std::countr_zero(set) / 8; }

    /// The UTF-16 units of the characters that begin here: one, or two for those of four bytes.
    int utf16Count() const {
        const std::uint64_t leads = ~((word_ >> 7) & ~(word_ >> 6)) & inEach;
        const std::uint64_t leadsOfFour = (word_ >> 7) & (word_ >> 6) & (word_ >> 5) & (word_ >> 4) & inEach;
        return static_cast<int>(((leads + leadsOfFour) * inEach) >> 56);
    }

private:
    static constexpr std::uint64_t inEach = 0x0101'0101'0101'0101;

    std::uint64_t word_ = 0;
};

} // namespace quelm
