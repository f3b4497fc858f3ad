#include "Tests/FileCore/SaveScenario.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace quelm::test {
namespace {

/// How many processes are killed in all: `QUELM_KILLS`, for a long run, or few.
int killCount() {
    const char* asked = std::getenv("QUELM_KILLS");
    return asked ? std::atoi(asked) : 150;
}

enum class Death { killed, none };

/// Lets a process save that is killed at a call.
Death saveAndDie(const SaveTrial& trial, const SaveScenario& scenario, const Fault& fault) {
    const pid_t child = ::fork();
    if (child == 0) {
        FaultySystemCalls calls;
        if (scenario.condition)
            calls.add(*scenario.condition);
        calls.add(fault);
        ::_exit(trial.save(calls) ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    if (WIFSIGNALED(status)) {
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
        return Death::killed;
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
    return Death::none;
}

/// What must hold after a process was killed, and that the next one finds its way. Returns whether there is a backup.
bool checkAfterDeath(const SaveTrial& trial, const SaveScenario& scenario) {
    const bool isWhole = trial.isOld() || trial.isNew();
    const bool hasBackup = trial.hasWholeBackup();
    EXPECT_TRUE(isWhole || (scenario.isInPlace && hasBackup));
    // What need not be brought back is not offered.
    EXPECT_FALSE(isWhole && hasBackup);

    FaultySystemCalls calls;
    if (scenario.condition)
        calls.add(*scenario.condition);
    EXPECT_TRUE(trial.save(calls));
    EXPECT_TRUE(trial.isNew());
    // A folder that takes no new files holds none that were left behind.
    if (!scenario.condition || scenario.condition->kind != "open") {
        EXPECT_EQ(trial.names(), scenario.names);
    }
    return hasBackup;
}

class FileSavingKillTests : public testing::TestWithParam<SaveScenario> {};

TEST_P(FileSavingKillTests, AProcessKilledAfterAnyCallLeavesTheOldOrTheNewFile) {
    // Longer than what takes its place: between writing and cutting the file is neither.
    const std::string before(150'000, 'a');
    const std::string after(100'000, 'z');
    const int count = SaveTrial::countCalls(GetParam(), before, after);
    int killed = 0;
    int backups = 0;
    for (int number = 0; number < count; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        const SaveTrial trial(GetParam(), before, after);
        killed += saveAndDie(trial, GetParam(), Fault::killingAfter().at(number)) == Death::killed ? 1 : 0;
        backups += checkAfterDeath(trial, GetParam()) ? 1 : 0;
    }
    EXPECT_EQ(killed, count - (GetParam().condition ? 1 : 0));
    EXPECT_EQ(backups > 0, GetParam().isInPlace);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FileSavingKillTests, testing::ValuesIn(SaveScenario::all()));

TEST(FileSavingKillRuns, ProcessesKilledAnywhereLeaveTheOldOrTheNewFile) {
    std::mt19937 random(20'240'917); // NOLINT(cert-msc51-cpp): the same run every time
    const auto below = [&](int end) { return std::uniform_int_distribution<int>(0, end - 1)(random); };
    const auto contents = [&](char letter) {
        constexpr int longest = 2'000'000;
        // Small ones as often as large ones.
        const int size = below(2) == 0 ? below(2'000) : below(longest);
        return std::string(static_cast<std::size_t>(size), letter);
    };
    const auto& scenarios = SaveScenario::all();
    const int wanted = killCount();
    int killed = 0;
    for (int run = 0; killed < wanted; ++run) {
        const SaveScenario& scenario = scenarios[static_cast<std::size_t>(run) % scenarios.size()];
        const std::string before = contents('a');
        const std::string after = contents('z');
        const SaveTrial trial(scenario, before, after);
        const int number = below(100);
        SCOPED_TRACE("run " + std::to_string(run) + ": " + scenario.name + ", call " + std::to_string(number));
        const Fault fault = below(2) == 0 ? Fault::killingInside() : Fault::killingAfter();
        const bool isKilled = saveAndDie(trial, scenario, fault.at(number)) == Death::killed;
        killed += isKilled ? 1 : 0;
        if (isKilled) {
            checkAfterDeath(trial, scenario);
        } else {
            EXPECT_TRUE(trial.isNew());
        }
        ASSERT_FALSE(testing::Test::HasFailure());
    }
}

} // namespace
} // namespace quelm::test
