#pragma once

#include <cstddef>
#include <cstdint>

namespace quelm {

/// What a byte at some distance from the start of a match may be.
struct MatchAnchor {
    /// From the first byte of the match.
    std::size_t offset = 0;
    /// Fewer than four values are filled up with one of them.
    std::uint8_t values[4] = {};
};

/// Positions that one mask tells about.
inline constexpr std::size_t positionsPerMask = 64;

/// For every position below `count` whether both anchors hold there: bit `p % 64` of `masks[p / 64]`. Bits beyond
/// `count` in the last mask are without meaning. All bytes up to `count`, rounded up to whole masks, and the greater of
/// the anchors' offsets further on, must be readable. Several GB/s.
void markCandidates(const std::uint8_t* text, std::size_t count, const MatchAnchor& first, const MatchAnchor& second,
                    std::uint64_t* masks);

} // namespace quelm
