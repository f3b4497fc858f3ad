#include "FileCore/JournalFile.h"
#include "FileCore/JournalRecovery.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"
#include "Tests/FileCore/Journals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm::test::journals {
namespace {

using End = JournalContents::End;
using testing::ElementsAreArray;

struct Outcome {
    /// The records whose append succeeded.
    std::vector<std::string> appended;
    bool hasFailed = false;
    std::string log;
    int count = 0;
};

// Writes on after every failure, as whoever keeps a journal may.
void appendAll(JournalFile& journal, const std::vector<std::string>& records, Outcome& outcome) {
    for (const std::string& record : records) {
        if (journal.append(record))
            outcome.appended.push_back(record);
        else
            outcome.hasFailed = true;
        if (!journal.synchronize())
            outcome.hasFailed = true;
    }
}

Outcome writeUnder(const std::optional<Fault>& fault, const std::string& path) {
    FaultySystemCalls calls;
    if (fault)
        calls.add(*fault);
    Outcome outcome;
    if (auto journal = JournalFile::create(path, calls))
        appendAll(*journal, payloads(), outcome);
    else
        outcome.hasFailed = true;
    outcome.log = calls.log();
    outcome.count = calls.count();
    return outcome;
}

// Goes on with a journal that ends torn.
Outcome continueUnder(const std::optional<Fault>& fault, const std::string& path) {
    FaultySystemCalls calls;
    if (fault)
        calls.add(*fault);
    Outcome outcome;
    auto recovery = JournalRecovery::open(path, calls);
    if (recovery && *recovery) {
        outcome.appended = recordsOf((*recovery)->contents());
        if (auto journal = std::move(**recovery).continueWriting())
            appendAll(*journal, {"more", "and more"}, outcome);
        else
            outcome.hasFailed = true;
    } else {
        outcome.hasFailed = true;
    }
    outcome.log = calls.log();
    outcome.count = calls.count();
    return outcome;
}

std::string tornJournal() {
    const std::string bytes = bytesOf({"one", "two", "three"});
    return bytes.substr(0, bytes.size() - 1);
}

TEST(JournalFault, EveryCallThatFailsLosesOnlyWhatWasRefused) {
    const TemporaryFolder folder;
    const int count = writeUnder(std::nullopt, folder.path("whole.journal")).count;
    ASSERT_GT(count, 30);
    for (const int code : {ENOSPC, EIO, EDQUOT, EROFS}) {
        for (int n = 0; n < count; ++n) {
            const std::string path = folder.path(std::to_string(code) + "-" + std::to_string(n) + ".journal");
            const Outcome outcome = writeUnder(Fault::failing(code).at(n), path);
            const JournalContents contents = JournalContents::read(SharedText(fileBytes(path)));
            ASSERT_THAT(recordsOf(contents), ElementsAreArray(outcome.appended)) << outcome.log;
            ASSERT_TRUE(contents.end == End::whole || contents.records.empty()) << outcome.log;
            // Only closing may fail without a word: it loses nothing.
            ASSERT_EQ(outcome.hasFailed, outcome.log.find("close " + path + " !") == std::string::npos &&
                                             outcome.log.find("close " + folder.path() + " !") == std::string::npos)
                << outcome.log;
        }
    }
}

TEST(JournalFault, ADiskThatStaysFullLeavesWhatWasAppendedBefore) {
    const TemporaryFolder folder;
    const int writes = static_cast<int>(payloads().size()) + 2; // the head, and the long record in two
    for (int n = 0; n < writes; ++n) {
        const std::string path = folder.path(std::to_string(n) + ".journal");
        FaultySystemCalls calls(Fault::failing(ENOSPC).from("write", n));
        // The last write before that falls short, as it does on a disk that gets full.
        if (n > 1)
            calls.add(Fault::shortening().at("write", n - 1));
        Outcome outcome;
        if (auto journal = JournalFile::create(path, calls))
            appendAll(*journal, payloads(), outcome);
        else
            ASSERT_EQ(n, 0);
        ASSERT_THAT(recordsIn(fileBytes(path)), ElementsAreArray(outcome.appended)) << calls.log();
        ASSERT_TRUE(isPrefix(outcome.appended, payloads())) << calls.log();
    }
}

TEST(JournalFault, InterruptedAndShortCallsLoseNothing) {
    const TemporaryFolder folder;
    const int count = writeUnder(std::nullopt, folder.path("whole.journal")).count;
    for (const Fault& fault : {Fault::interrupting(), Fault::shortening()}) {
        for (int n = 0; n < count; ++n) {
            const std::string path = folder.path("a.journal");
            const Outcome outcome = writeUnder(fault.at(n), path);
            ASSERT_FALSE(outcome.hasFailed) << outcome.log;
            ASSERT_EQ(outcome.appended, payloads()) << outcome.log;
            ASSERT_EQ(recordsIn(fileBytes(path)), payloads()) << outcome.log;
            ASSERT_TRUE(std::move(**JournalRecovery::open(path)).remove());
        }
    }
}

TEST(JournalFault, EveryWriteMayFallShort) {
    const TemporaryFolder folder;
    const std::string path = folder.path("a.journal");
    const Outcome outcome = writeUnder(Fault::shortening().from("write", 0), path);
    EXPECT_FALSE(outcome.hasFailed) << outcome.log;
    EXPECT_EQ(recordsIn(fileBytes(path)), payloads());
}

TEST(JournalFault, EveryCallOfGoingOnThatFailsLeavesTheRecordsThere) {
    const TemporaryFolder folder;
    const int count = continueUnder(std::nullopt, folder.write("a.journal", tornJournal())).count;
    ASSERT_GT(count, 10);
    for (const int code : {ENOSPC, EIO}) {
        for (int n = 0; n < count; ++n) {
            const std::string path = folder.write("a.journal", tornJournal());
            const Outcome outcome = continueUnder(Fault::failing(code).at(n), path);
            const std::vector<std::string> there = recordsIn(fileBytes(path));
            ASSERT_TRUE(isPrefix({"one", "two"}, there)) << outcome.log;
            if (!outcome.appended.empty()) {
                ASSERT_THAT(there, ElementsAreArray(outcome.appended)) << outcome.log;
            }
        }
    }
}

TEST(JournalFault, InterruptedAndShortCallsDoNotDisturbGoingOn) {
    const TemporaryFolder folder;
    const int count = continueUnder(std::nullopt, folder.write("a.journal", tornJournal())).count;
    for (const Fault& fault : {Fault::interrupting(), Fault::shortening()}) {
        for (int n = 0; n < count; ++n) {
            const std::string path = folder.write("a.journal", tornJournal());
            const Outcome outcome = continueUnder(fault.at(n), path);
            ASSERT_FALSE(outcome.hasFailed) << outcome.log;
            ASSERT_THAT(recordsIn(fileBytes(path)), testing::ElementsAre("one", "two", "more", "and more"))
                << outcome.log;
        }
    }
}

TEST(JournalFault, AJournalThatCannotBeCreatedLeavesNoFile) {
    const TemporaryFolder folder;
    for (const char* kind : {"write", "synchronizeData", "synchronize"}) {
        const Outcome outcome = writeUnder(Fault::failing(EIO).at(kind, 0), folder.path("a.journal"));
        EXPECT_TRUE(outcome.hasFailed);
        EXPECT_THAT(folder.names(), testing::IsEmpty()) << outcome.log;
    }
}

TEST(JournalFault, AJournalThatCannotBeRemovedIsStillThere) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.journal", bytesOf({"one"}));
    FaultySystemCalls calls(Fault::failing(EACCES).at("unlink", 0));
    const auto removed = std::move(**JournalRecovery::open(path, calls)).remove();
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error(), SystemError{EACCES});
    EXPECT_THAT(recordsIn(fileBytes(path)), testing::ElementsAre("one"));
}

TEST(JournalFault, AJournalThatCannotBeKeptAsideIsStillThere) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.journal", bytesOf({"one"}));
    FaultySystemCalls calls(Fault::failing(EIO).at("rename", 0));
    const auto aside = std::move(**JournalRecovery::open(path, calls)).keepAside();
    ASSERT_FALSE(aside);
    EXPECT_EQ(aside.error(), SystemError{EIO});
    EXPECT_THAT(folder.names(), testing::ElementsAre("a.journal"));
}

} // namespace
} // namespace quelm::test::journals
