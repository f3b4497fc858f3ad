#include "FileCore/FileBackup.h"
#include "Tests/FileCore/SaveScenario.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quelm::test {
namespace {

const std::string before(150'000, 'a');
const std::string after(200'000, 'z');

/// Saves with the fault, and checks what must hold whatever fails. Returns what `saveFile` did.
std::expected<SavedFile, SaveFailure> saveWithFault(const SaveScenario& scenario, const Fault& fault) {
    const SaveTrial trial(scenario, before, after);
    FaultySystemCalls calls;
    if (scenario.condition)
        calls.add(*scenario.condition);
    calls.add(fault);
    const auto saved = trial.save(calls);
    const std::string log = calls.log();

    if (saved) {
        EXPECT_TRUE(trial.isNew()) << log;
        EXPECT_EQ(saved->checksum, ContentChecksum::of(after)) << log;
    } else if (saved.error().backup.empty()) {
        EXPECT_TRUE(trial.isOld()) << describe(saved.error()) << '\n' << log;
    } else {
        EXPECT_TRUE(trial.hasWholeBackup()) << describe(saved.error()) << '\n' << log;
    }
    // What could not be removed is found later, by whoever saves or starts next.
    const auto made = calls.made();
    const bool mayLeaveFiles = std::ranges::any_of(
        made, [](const FaultySystemCalls::Call& call) { return call.isStruck && call.kind == "unlink"; });
    const bool hasBackup = !saved && !saved.error().backup.empty();
    if (!mayLeaveFiles) {
        EXPECT_TRUE(trial.backupNames().empty() || hasBackup) << log;
        for (const std::string& name : trial.names())
            EXPECT_NE(std::ranges::find(scenario.names, name), scenario.names.end()) << name << '\n' << log;
    }
    EXPECT_EQ(findBackups(trial.backupFolder()).size(), hasBackup ? 1u : 0u) << log;
    EXPECT_EQ(trial.backupNames().size(), hasBackup ? 1u : 0u) << log;

    FaultySystemCalls later;
    if (scenario.condition)
        later.add(*scenario.condition);
    EXPECT_TRUE(trial.save(later)) << log;
    EXPECT_TRUE(trial.isNew()) << log;
    EXPECT_TRUE(trial.backupNames().empty()) << "what a failure left is worth nothing any more\n" << log;
    // A folder that takes no new files holds none that were left behind.
    if (!scenario.condition || scenario.condition->kind != "open") {
        EXPECT_EQ(trial.names(), scenario.names) << log;
    }
    return saved;
}

class FileSavingFaultTests : public testing::TestWithParam<SaveScenario> {};

TEST_P(FileSavingFaultTests, OneFailingCallLeavesTheOldOrTheNewFile) {
    const int count = SaveTrial::countCalls(GetParam(), before, after);
    ASSERT_GT(count, 10);
    int failures = 0;
    for (int number = 0; number < count; ++number) {
        for (const int code : {ENOSPC, EIO, EACCES}) {
            SCOPED_TRACE("call " + std::to_string(number) + " fails with " + std::to_string(code));
            failures += saveWithFault(GetParam(), Fault::failing(code).at(number)) ? 0 : 1;
        }
    }
    EXPECT_GT(failures, 10);
}

TEST_P(FileSavingFaultTests, AnInterruptedCallIsRepeated) {
    const int count = SaveTrial::countCalls(GetParam(), before, after);
    for (int number = 0; number < count; ++number) {
        const auto saved = saveWithFault(GetParam(), Fault::interrupting().at(number));
        EXPECT_TRUE(saved) << "call " << number << ": " << describe(saved.error());
    }
}

TEST_P(FileSavingFaultTests, AShortCallGoesOn) {
    const int count = SaveTrial::countCalls(GetParam(), before, after);
    for (int number = 0; number < count; ++number) {
        const auto saved = saveWithFault(GetParam(), Fault::shortening().at(number));
        EXPECT_TRUE(saved) << "call " << number << ": " << describe(saved.error());
    }
}

TEST_P(FileSavingFaultTests, ADeviceThatFailsForGoodLeavesTheOldOrTheNewFileOrABackup) {
    const int count = SaveTrial::countCalls(GetParam(), before, after);
    int backups = 0;
    for (int number = 0; number < count; ++number) {
        for (const int code : {ENOSPC, EIO}) {
            SCOPED_TRACE("from call " + std::to_string(number) + " on with " + std::to_string(code));
            const SaveTrial trial(GetParam(), before, after);
            FaultySystemCalls calls;
            if (GetParam().condition)
                calls.add(*GetParam().condition);
            calls.add(Fault::failing(code).from(number));
            const auto saved = trial.save(calls);
            if (saved) {
                EXPECT_TRUE(trial.isNew());
            } else if (saved.error().backup.empty()) {
                EXPECT_TRUE(trial.isOld()) << describe(saved.error());
            } else {
                EXPECT_TRUE(trial.isOld() || trial.isNew() || trial.hasWholeBackup()) << describe(saved.error());
            }
            backups += !saved && !saved.error().backup.empty() ? 1 : 0;
        }
    }
    EXPECT_EQ(backups > 0, GetParam().isInPlace);
}

TEST_P(FileSavingFaultTests, ADiskThatIsFullWhileItIsWrittenSaysSo) {
    for (const std::string kind : {"write", "synchronize"}) {
        const SaveTrial trial(GetParam(), before, after);
        FaultySystemCalls calls;
        if (GetParam().condition)
            calls.add(*GetParam().condition);
        calls.add(Fault::failing(ENOSPC).at(kind, 0));
        const auto saved = trial.save(calls);
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().reason, SaveFailure::Reason::system);
        EXPECT_EQ(saved.error().error, SystemError{ENOSPC});
        EXPECT_TRUE(trial.isOld());
    }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FileSavingFaultTests, testing::ValuesIn(SaveScenario::all()));

} // namespace
} // namespace quelm::test
