#pragma once

#include "Benchmarks/Harness/Samples.h"

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

/// How long a contest goes on: at least `fewestRounds`, then until the time is used up.
struct ContestLength {
    int fewestRounds = 5;
    int mostRounds = 61;
    double seconds = 1.5;
};

/// Runs all contestants in turns in one process, so that whatever disturbs the machine disturbs all of them:
/// in given order in one round, in reverse in the next. Free memory goes back to the system before every run.
std::vector<ContestResult> hold(const std::vector<Contestant>& contestants, const ContestLength& length);

} // namespace quelm::bench
