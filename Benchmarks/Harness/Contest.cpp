#include "Benchmarks/Harness/Contest.h"

#include "Benchmarks/Harness/ProcessMemory.h"
#include "Benchmarks/Harness/Timing.h"

#include <ranges>

namespace quelm::bench {

namespace {

class Standing {
public:
    explicit Standing(const Contestant& contestant) : contestant_(&contestant), result_{contestant.name, {}} {}

    void runOnce(int round, FreedMemory freedMemory) {
        if (hasFailed_ || round >= contestant_->mostRounds)
            return;
        if (freedMemory == FreedMemory::returned)
            processmemory::returnFreeMemory();
        const std::optional<double> seconds = contestant_->run();
        if (seconds)
            result_.seconds.add(*seconds);
        else
            hasFailed_ = true;
    }

    ContestResult result() const { return hasFailed_ ? ContestResult{result_.name, {}} : result_; }

private:
    const Contestant* contestant_;
    ContestResult result_;
    bool hasFailed_ = false;
};

void runRound(std::vector<Standing>& standings, int round, FreedMemory freedMemory) {
    if (round % 2 == 0) {
        for (Standing& standing : standings)
            standing.runOnce(round, freedMemory);
    } else {
        for (Standing& standing : std::views::reverse(standings))
            standing.runOnce(round, freedMemory);
    }
}

} // namespace

std::vector<ContestResult> hold(const std::vector<Contestant>& contestants, const ContestRules& rules) {
    std::vector<Standing> standings(contestants.begin(), contestants.end());
    double spent = 0;
    for (int round = 0; round < rules.mostRounds; ++round) {
        if (round >= rules.fewestRounds && spent >= rules.seconds)
            break;
        spent += secondsOf([&] { runRound(standings, round, rules.freedMemory); });
    }
    std::vector<ContestResult> results;
    results.reserve(standings.size());
    for (const Standing& standing : standings)
        results.push_back(standing.result());
    return results;
}

} // namespace quelm::bench
