#pragma once

#include "Benchmarks/Harness/Samples.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quelm::bench {

/// One side of a comparison.
struct Contestant {
    std::string name;

    /// Does the work once and tells the seconds of its timed part; absent when it failed, and then it runs no
    /// more.
    std::function<std::optional<double>()> run;

    /// The slow ones take part in the first rounds only.
    int mostRounds = 1000;
};

/// What a contest has found out about one contestant, in the order in which they were given.
struct ContestResult {
    std::string name;
    /// Empty when it failed.
    Samples seconds;
};

/// What happens to memory that a run has freed.
enum class FreedMemory : std::uint8_t {
    /// It goes back to the system before the next run, as if every run were a program's first.
    returned,
    /// It stays with whoever keeps it, as in a program that does the same again and again.
    kept,
};

struct ContestRules {
    /// A contest goes on at least so long, then until the time is used up.
    int fewestRounds = 5;
    int mostRounds = 61;
    double seconds = 2.5;
    FreedMemory freedMemory = FreedMemory::returned;
};

/// Runs all contestants in turns in one process, so that whatever disturbs the machine disturbs all of them:
/// in given order in one round, in reverse in the next.
std::vector<ContestResult> hold(const std::vector<Contestant>& contestants, const ContestRules& rules);

} // namespace quelm::bench
