#include "FileCore/JournalFile.h"
#include "FileCore/JournalRecovery.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"
#include "Tests/FileCore/Journals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm::test::journals {
namespace {

using End = JournalContents::End;
using testing::ElementsAre;
using testing::IsEmpty;

class JournalFileTest : public testing::Test {
protected:
    std::vector<std::string> recordsThere() const { return recordsIn(fileBytes(path_)); }

    TemporaryFolder folder_;
    std::string path_ = folder_.path("a.journal");
};

TEST_F(JournalFileTest, WhatIsAppendedIsInTheFileAtOnce) {
    auto journal = JournalFile::create(path_);
    ASSERT_TRUE(journal);
    std::vector<std::string> appended;
    for (const std::string& record : payloads()) {
        ASSERT_TRUE(journal->append(record));
        appended.push_back(record);
        EXPECT_EQ(recordsThere(), appended);
        EXPECT_EQ(journal->size(), static_cast<std::int64_t>(fileBytes(path_).size()));
    }
    EXPECT_TRUE(journal->synchronize());
}

TEST_F(JournalFileTest, NobodyElseMayReadTheFile) {
    ASSERT_TRUE(JournalFile::create(path_));
    struct stat status = {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(JournalFileTest, APathThatIsTakenStaysAsItIs) {
    folder_.write("a.journal", "something");
    const auto journal = JournalFile::create(path_);
    ASSERT_FALSE(journal);
    EXPECT_EQ(journal.error(), SystemError{EEXIST});
    EXPECT_EQ(fileBytes(path_), "something");
}

TEST_F(JournalFileTest, AFolderThatIsNotThereIsTold) {
    const auto journal = JournalFile::create(folder_.path("none/a.journal"));
    ASSERT_FALSE(journal);
    EXPECT_EQ(journal.error(), SystemError{ENOENT});
}

TEST_F(JournalFileTest, TheNameIsSynchronizedAfterTheHead) {
    FaultySystemCalls calls;
    ASSERT_TRUE(JournalFile::create(path_, calls));
    std::vector<std::string> kinds;
    for (const auto& call : calls.made())
        kinds.push_back(call.kind + (call.path == folder_.path() ? " folder" : ""));
    EXPECT_THAT(kinds, ElementsAre("open", "lock", "fileStatus", "linkStatus", "write", "synchronizeData",
                                   "open folder", "synchronize folder", "close folder", "close"));
}

TEST_F(JournalFileTest, ARecordThatIsTooLongIsRefused) {
    auto journal = JournalFile::create(path_);
    ASSERT_TRUE(journal);
    const char none = '\0';
    // Nothing of it is read.
    const auto appended = journal->append(std::string_view(&none, JournalFile::longestRecord + 1));
    ASSERT_FALSE(appended);
    EXPECT_EQ(appended.error(), SystemError{EFBIG});
    EXPECT_TRUE(journal->append("next"));
    EXPECT_THAT(recordsThere(), ElementsAre("next"));
}

TEST_F(JournalFileTest, RemovingTakesTheFileAway) {
    auto journal = JournalFile::create(path_);
    ASSERT_TRUE(journal);
    EXPECT_TRUE(journal->remove());
    EXPECT_THAT(folder_.names(), IsEmpty());
    // It is not there any more, which is what was asked for.
    EXPECT_TRUE(journal->remove());
}

TEST_F(JournalFileTest, RemovingLeavesAnotherFileOfThatName) {
    auto journal = JournalFile::create(path_);
    ASSERT_TRUE(journal);
    ASSERT_EQ(::unlink(path_.c_str()), 0);
    folder_.write("a.journal", "of another");
    EXPECT_TRUE(journal->remove());
    EXPECT_EQ(fileBytes(path_), "of another");
}

TEST_F(JournalFileTest, WhatAFailedWriteLeavesIsCutOffAtOnce) {
    FaultySystemCalls calls;
    auto journal = JournalFile::create(path_, calls);
    ASSERT_TRUE(journal && journal->append("one"));
    const std::string before = fileBytes(path_);
    calls.add(Fault::shortening().at("write", 2));
    calls.add(Fault::failing(ENOSPC).at("write", 3));
    const auto appended = journal->append("does not fit");
    ASSERT_FALSE(appended);
    EXPECT_EQ(appended.error(), SystemError{ENOSPC});
    EXPECT_EQ(fileBytes(path_), before);
    EXPECT_TRUE(journal->append("two"));
    EXPECT_THAT(recordsThere(), ElementsAre("one", "two"));
}

TEST_F(JournalFileTest, WhatCouldNotBeCutOffAtOnceIsBeforeTheNextRecord) {
    FaultySystemCalls calls;
    auto journal = JournalFile::create(path_, calls);
    ASSERT_TRUE(journal && journal->append("one"));
    calls.add(Fault::shortening().at("write", 2));
    calls.add(Fault::failing(ENOSPC).at("write", 3));
    calls.add(Fault::failing(EIO).at("truncate", 0));
    EXPECT_FALSE(journal->append("does not fit"));
    const JournalContents between = JournalContents::read(SharedText(fileBytes(path_)));
    EXPECT_EQ(between.end, End::torn);
    EXPECT_THAT(recordsOf(between), ElementsAre("one"));
    EXPECT_TRUE(journal->append("two"));
    EXPECT_THAT(recordsThere(), ElementsAre("one", "two"));
}

TEST_F(JournalFileTest, NothingIsAppendedToRemains) {
    FaultySystemCalls calls;
    auto journal = JournalFile::create(path_, calls);
    ASSERT_TRUE(journal && journal->append("one"));
    calls.add(Fault::shortening().at("write", 2));
    calls.add(Fault::failing(ENOSPC).at("write", 3));
    calls.add(Fault::failing(EIO).from("truncate", 0));
    EXPECT_FALSE(journal->append("does not fit"));
    const auto appended = journal->append("two");
    ASSERT_FALSE(appended);
    EXPECT_EQ(appended.error(), SystemError{EIO});
    EXPECT_THAT(recordsThere(), ElementsAre("one"));
}

TEST_F(JournalFileTest, AfterAFailedSynchronizationNoneSucceeds) {
    FaultySystemCalls calls;
    auto journal = JournalFile::create(path_, calls);
    ASSERT_TRUE(journal && journal->append("one"));
    calls.add(Fault::failing(EIO).at("synchronizeData", 1));
    EXPECT_FALSE(journal->synchronize());
    const auto again = journal->synchronize();
    ASSERT_FALSE(again);
    EXPECT_EQ(again.error(), SystemError{EIO});
}

} // namespace
} // namespace quelm::test::journals
