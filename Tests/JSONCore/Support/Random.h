#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace quelm::test {

/// A small generator (SplitMix64) whose numbers are the same on every platform for the same seed.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next();

    /// From 0 to below `bound`, which is at least 1.
    std::int64_t below(std::int64_t bound);

    /// True once in `n` calls on average.
    bool oneIn(std::int64_t n) { return below(n) == 0; }

    /// An element of a container that is not empty.
    template <typename Container>
    decltype(auto) oneOf(const Container& container) {
        return container[static_cast<std::size_t>(below(static_cast<std::int64_t>(std::size(container))))];
    }

private:
    std::uint64_t state_;
};

/// Runs a property as many times, each with a generator of another seed, and stops at the first round that
/// fails. The seed stands in the failure's trace. The environment may ask for more: QUELM_TEST_ROUNDS
/// multiplies the number of rounds, QUELM_TEST_SEED runs one round with that seed.
void forEachRound(int rounds, const std::function<void(Random&)>& property);

} // namespace quelm::test
