#include "Benchmarks/Generator/Random.h"

#include <bit>

namespace quelm::bench {

namespace {

std::uint64_t splitmix(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
}

} // namespace

Random::Random(std::uint64_t seed) {
    for (std::uint64_t& word : state_)
        word = splitmix(seed);
}

std::uint64_t Random::next() {
    const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = std::rotl(state_[3], 45);
    return result;
}

} // namespace quelm::bench
