#include "Tests/JSONCore/Support/Random.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace quelm::test {

std::uint64_t Random::next() {
    state_ += 0x9E37'79B9'7F4A'7C15;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58'476D'1CE4'E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D0'49BB'1331'11EB;
    return mixed ^ (mixed >> 31);
}

std::int64_t Random::below(std::int64_t bound) {
    return static_cast<std::int64_t>(next() % static_cast<std::uint64_t>(bound));
}

namespace {

std::optional<std::uint64_t> numberFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    if (!value || !*value)
        return std::nullopt;
    return std::strtoull(value, nullptr, 10);
}

/// Whether the property may go on.
bool runRound(std::uint64_t seed, const std::function<void(Random&)>& property) {
    SCOPED_TRACE("the same round alone: QUELM_TEST_SEED=" + std::to_string(seed));
    Random random(seed);
    property(random);
    return !testing::Test::HasFailure();
}

} // namespace

void forEachRound(int rounds, const std::function<void(Random&)>& property) {
    if (const auto seed = numberFromEnvironment("QUELM_TEST_SEED")) {
        runRound(*seed, property);
        return;
    }
    const std::uint64_t factor = numberFromEnvironment("QUELM_TEST_ROUNDS").value_or(1);
    const std::uint64_t last = factor * static_cast<std::uint64_t>(rounds);
    for (std::uint64_t seed = 1; seed <= last; ++seed) {
        if (!runRound(seed, property))
            return;
    }
}

} // namespace quelm::test
