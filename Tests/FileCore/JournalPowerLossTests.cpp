#include "FileCore/JournalRecovery.h"
#include "Tests/FileCore/FaultySystemCalls.h"
#include "Tests/FileCore/Journals.h"
#include "Tests/FileCore/SimulatedDisk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm::test::journals {
namespace {

constexpr std::uint32_t lossesPerCall = 40;
const std::string path = "/recovery/a.journal";

std::string contentsOrNothing(const SimulatedDisk& disk) {
    return disk.contents(path).value_or(std::string());
}

TEST(JournalPowerLoss, WhatWasSynchronizedSurvivesALossAtEachCall) {
    const std::vector<std::string> records = payloads();
    for (int n = 0;; ++n) {
        SimulatedDisk disk;
        disk.addFolder("/recovery", 0700);
        // From there on nothing reaches the disk.
        FaultySystemCalls calls(Fault::failing(EIO).from(n), disk);
        Progress progress;
        writeJournal(path, records, calls, progress);
        for (std::uint32_t seed = 0; seed < lossesPerCall; ++seed) {
            const SimulatedDisk left(disk.afterPowerLoss(seed));
            const std::vector<std::string> there = recordsIn(contentsOrNothing(left));
            ASSERT_TRUE(isPrefix(there, records)) << n << ' ' << seed;
            ASSERT_GE(there.size(), progress.synchronized) << n << ' ' << seed;
            if (progress.isCreated) {
                ASSERT_TRUE(left.contents(path)) << n << ' ' << seed;
            }
        }
        if (!calls.hasStruck()) {
            ASSERT_EQ(progress.synchronized, records.size());
            return;
        }
    }
}

TEST(JournalPowerLoss, WhatIsLeftCanBeGoneOnWith) {
    const std::vector<std::string> records = payloads();
    SimulatedDisk disk;
    disk.addFolder("/recovery", 0700);
    auto first = JournalFile::create(path, disk);
    ASSERT_TRUE(first);
    for (std::size_t i = 0; i < records.size(); ++i) {
        ASSERT_TRUE(first->append(records[i]));
        if (i == 3) {
            ASSERT_TRUE(first->synchronize());
        }
    }
    for (std::uint32_t seed = 0; seed < 500; ++seed) {
        SimulatedDisk left(disk.afterPowerLoss(seed));
        auto recovery = JournalRecovery::open(path, left);
        ASSERT_TRUE(recovery && *recovery) << seed;
        std::vector<std::string> kept = recordsOf((*recovery)->contents());
        auto journal = std::move(**recovery).continueWriting();
        ASSERT_TRUE(journal) << seed;
        // What was cut off stays cut off, before anything else is synchronized.
        const SimulatedDisk begun(left.afterPowerLoss(seed + 2));
        const JournalContents contents = JournalContents::read(SharedText(contentsOrNothing(begun)));
        ASSERT_EQ(contents.end, JournalContents::End::whole) << seed;
        ASSERT_EQ(recordsOf(contents), kept) << seed;
        ASSERT_TRUE(journal->append("more") && journal->synchronize()) << seed;
        ASSERT_TRUE(journal->append("not safe")) << seed;
        kept.emplace_back("more");
        // And once more.
        const SimulatedDisk again(left.afterPowerLoss(seed + 1));
        std::vector<std::string> there = recordsIn(contentsOrNothing(again));
        ASSERT_TRUE(isPrefix(kept, there)) << seed;
        kept.emplace_back("not safe");
        ASSERT_TRUE(isPrefix(there, kept)) << seed;
    }
}

TEST(JournalPowerLoss, AJournalThatWasRemovedDoesNotComeBack) {
    SimulatedDisk disk;
    disk.addFolder("/recovery", 0700);
    auto journal = JournalFile::create(path, disk);
    ASSERT_TRUE(journal && journal->append("one") && journal->synchronize() && journal->remove());
    for (std::uint32_t seed = 0; seed < 100; ++seed)
        ASSERT_FALSE(SimulatedDisk(disk.afterPowerLoss(seed)).contents(path)) << seed;
}

TEST(JournalPowerLoss, AJournalThatWasKeptAsideStaysThere) {
    SimulatedDisk disk;
    disk.addFile(path, bytesOf({"one"}), 0600);
    ASSERT_TRUE(std::move(**JournalRecovery::open(path, disk)).keepAside());
    for (std::uint32_t seed = 0; seed < 100; ++seed) {
        const SimulatedDisk left(disk.afterPowerLoss(seed));
        ASSERT_THAT(left.names("/recovery"), testing::ElementsAre("a.journal.apartado")) << seed;
    }
}

TEST(JournalPowerLoss, AFullDiskCutsOffWhatDoesNotFit) {
    SimulatedDisk disk;
    disk.addFolder("/recovery", 0700);
    auto journal = JournalFile::create(path, disk);
    ASSERT_TRUE(journal);
    disk.setCapacity(1000);
    std::vector<std::string> appended;
    for (int i = 0; i < 30; ++i) {
        const std::string record(static_cast<std::size_t>(40 + i), 'x');
        if (journal->append(record))
            appended.push_back(record);
    }
    EXPECT_GT(appended.size(), 10);
    EXPECT_LT(appended.size(), 30);
    EXPECT_EQ(recordsIn(contentsOrNothing(disk)), appended);
}

} // namespace
} // namespace quelm::test::journals
