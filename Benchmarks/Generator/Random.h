#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quelm::bench {

/// Pseudo-random numbers: xoshiro256** seeded through splitmix64, written out here so that a seed means the
/// same numbers with every compiler, library and machine, which the distributions of the standard library do
/// not promise.
class Random {
public:
    explicit Random(std::uint64_t seed);

    /// 64 random bits.
    std::uint64_t next();

    /// From 0 to below `bound`, which must not be 0.
    std::uint32_t below(std::uint32_t bound) { return static_cast<std::uint32_t>(((next() >> 32) * bound) >> 32); }

    /// From `low` to `high`, both included; `low` must not be above `high`.
    std::uint32_t between(std::uint32_t low, std::uint32_t high) { return low + below(high - low + 1); }

    /// True in `percent` of a hundred cases.
    bool chance(std::uint32_t percent) { return below(100) < percent; }

    /// One element of a list that is not empty.
    template <typename List>
    const auto& pick(const List& list) {
        return list[below(static_cast<std::uint32_t>(list.size()))];
    }

private:
    std::array<std::uint64_t, 4> state_;
};

} // namespace quelm::bench
