#include "FileCore/JournalRecovery.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"
#include "Tests/FileCore/Journals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quelm::test::journals {
namespace {

using End = JournalContents::End;
using testing::ElementsAre;
using testing::IsEmpty;

class JournalRecoveryTest : public testing::Test {
protected:
    void leaveBehind(const std::vector<std::string>& records) const {
        Progress progress;
        writeJournal(path_, records, SystemCalls::real(), progress);
        ASSERT_EQ(progress.synchronized, records.size());
    }

    std::optional<JournalRecovery> recover() const {
        auto opened = JournalRecovery::open(path_);
        EXPECT_TRUE(opened);
        return opened ? std::move(*opened) : std::nullopt;
    }

    // Whether another process gets the journal.
    bool isFreeForAnotherProcess() const {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto opened = JournalRecovery::open(path_);
            ::_exit(opened && *opened ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status) == 0;
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.path("a.journal");
};

TEST_F(JournalRecoveryTest, WhatWasLeftBehindIsRead) {
    leaveBehind(payloads());
    const auto recovery = recover();
    ASSERT_TRUE(recovery);
    EXPECT_EQ(recovery->contents().end, End::whole);
    EXPECT_EQ(recordsOf(recovery->contents()), payloads());
}

TEST_F(JournalRecoveryTest, AJournalThatIsNotThereIsAbsent) {
    EXPECT_FALSE(recover());
}

TEST_F(JournalRecoveryTest, AJournalIsOneProcesssAtATime) {
    {
        const auto journal = JournalFile::create(path_);
        ASSERT_TRUE(journal);
        EXPECT_FALSE(isFreeForAnotherProcess());
        // Nor is it free for this one.
        EXPECT_FALSE(recover());
    }
    EXPECT_TRUE(isFreeForAnotherProcess());
    {
        const auto recovery = recover();
        ASSERT_TRUE(recovery);
        EXPECT_FALSE(isFreeForAnotherProcess());
    }
    EXPECT_TRUE(isFreeForAnotherProcess());
}

TEST_F(JournalRecoveryTest, AJournalThatIsContinuedStaysLocked) {
    leaveBehind({"one"});
    const auto journal = std::move(*recover()).continueWriting();
    ASSERT_TRUE(journal);
    EXPECT_FALSE(isFreeForAnotherProcess());
}

TEST_F(JournalRecoveryTest, AProcessThatIsKilledLeavesItsJournalUnlocked) {
    const pid_t child = ::fork();
    if (child == 0) {
        FaultySystemCalls calls(Fault::killingAfter().at("write", 2));
        Progress progress;
        writeJournal(path_, {"one", "two", "three"}, calls, progress);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    const auto recovery = recover();
    ASSERT_TRUE(recovery);
    EXPECT_THAT(recordsOf(recovery->contents()), ElementsAre("one", "two"));
}

TEST_F(JournalRecoveryTest, OpeningWritesNothing) {
    leaveBehind({"one", "two"});
    const std::string torn = fileBytes(path_).substr(0, fileBytes(path_).size() - 2);
    folder_.write("a.journal", torn);
    const auto recovery = recover();
    ASSERT_TRUE(recovery);
    EXPECT_EQ(recovery->contents().end, End::torn);
    EXPECT_EQ(fileBytes(path_), torn);
}

TEST_F(JournalRecoveryTest, ContinuingAppendsAfterTheRecords) {
    leaveBehind({"one", "two"});
    auto journal = std::move(*recover()).continueWriting();
    ASSERT_TRUE(journal);
    EXPECT_TRUE(journal->append("three"));
    EXPECT_EQ(journal->size(), static_cast<std::int64_t>(fileBytes(path_).size()));
    EXPECT_THAT(recordsIn(fileBytes(path_)), ElementsAre("one", "two", "three"));
}

TEST_F(JournalRecoveryTest, ContinuingCutsOffATornRecord) {
    leaveBehind({"one", "two"});
    folder_.write("a.journal", fileBytes(path_).substr(0, fileBytes(path_).size() - 2));
    auto journal = std::move(*recover()).continueWriting();
    ASSERT_TRUE(journal);
    EXPECT_THAT(recordsIn(fileBytes(path_)), ElementsAre("one"));
    EXPECT_TRUE(journal->append("three"));
    const JournalContents contents = JournalContents::read(SharedText(fileBytes(path_)));
    EXPECT_EQ(contents.end, End::whole);
    EXPECT_THAT(recordsOf(contents), ElementsAre("one", "three"));
}

TEST_F(JournalRecoveryTest, ContinuingCutsOffDamage) {
    leaveBehind({"one", "two", "three"});
    std::string bytes = fileBytes(path_);
    bytes[bytes.find("two")] = 'T';
    folder_.write("a.journal", bytes);
    auto recovery = recover();
    ASSERT_TRUE(recovery);
    EXPECT_EQ(recovery->contents().end, End::damaged);
    auto journal = std::move(*recovery).continueWriting();
    ASSERT_TRUE(journal && journal->append("four"));
    EXPECT_THAT(recordsIn(fileBytes(path_)), ElementsAre("one", "four"));
}

TEST_F(JournalRecoveryTest, AJournalWithoutAHeadGetsOne) {
    for (const std::string& begin : {std::string(), std::string("QUELMJN1abc"), std::string(100, '\0')}) {
        folder_.write("a.journal", begin);
        auto journal = std::move(*recover()).continueWriting();
        ASSERT_TRUE(journal && journal->append("one"));
        EXPECT_THAT(recordsIn(fileBytes(path_)), ElementsAre("one"));
    }
}

TEST_F(JournalRecoveryTest, RemovingTakesTheFileAway) {
    leaveBehind({"one"});
    EXPECT_TRUE(std::move(*recover()).remove());
    EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(JournalRecoveryTest, KeepingAsideRenamesTheFile) {
    for (const char* name : {"a.journal.apartado", "a.journal.apartado-2", "a.journal.apartado-3"}) {
        leaveBehind({name});
        const auto aside = std::move(*recover()).keepAside();
        ASSERT_TRUE(aside);
        EXPECT_EQ(*aside, folder_.path(name));
        EXPECT_THAT(recordsIn(fileBytes(*aside)), ElementsAre(name));
    }
    EXPECT_THAT(folder_.names(), ElementsAre("a.journal.apartado", "a.journal.apartado-2", "a.journal.apartado-3"));
}

TEST_F(JournalRecoveryTest, AFileThatWasTakenAwayBeforeTheLockIsAbsent) {
    leaveBehind({"one"});
    // Removes the file between its opening and its lock, as another process may.
    class RemovingCalls final : public FaultySystemCalls {
    public:
        explicit RemovingCalls(std::string path) : path_(std::move(path)) {}
        int lock(int file, int operation) override {
            ::unlink(path_.c_str());
            return FaultySystemCalls::lock(file, operation);
        }

    private:
        std::string path_;
    } calls(path_);
    const auto opened = JournalRecovery::open(path_, calls);
    ASSERT_TRUE(opened);
    EXPECT_FALSE(*opened);
}

TEST_F(JournalRecoveryTest, WhatIsNoRegularFileIsAnErrorAtOnce) {
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    const auto pipe = JournalRecovery::open(path_);
    ASSERT_FALSE(pipe);
    EXPECT_EQ(pipe.error(), SystemError{EINVAL});

    const auto device = JournalRecovery::open("/dev/zero");
    ASSERT_FALSE(device);

    const auto folder = JournalRecovery::open(folder_.path());
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error(), SystemError{EISDIR});

    const std::string link = folder_.path("link.journal");
    ASSERT_EQ(::symlink(path_.c_str(), link.c_str()), 0);
    const auto linked = JournalRecovery::open(link);
    ASSERT_FALSE(linked);
    EXPECT_EQ(linked.error(), SystemError{ELOOP});
}

TEST_F(JournalRecoveryTest, AFileBeyondAllMemoryIsRefused) {
    folder_.write("a.journal", "");
    ASSERT_EQ(::truncate(path_.c_str(), off_t{1} << 42), 0);
    const auto opened = JournalRecovery::open(path_);
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error(), SystemError{EFBIG});
}

TEST_F(JournalRecoveryTest, ANewFileThatIsLookedAtIsCreatedAllTheSame) {
    // Another process opens and locks the new file before its maker does, finds nothing in it and removes it.
    class CuriousCalls final : public FaultySystemCalls {
    public:
        explicit CuriousCalls(std::string path) : path_(std::move(path)) {}
        int lock(int file, int operation) override {
            if (!std::exchange(hasLooked_, true)) {
                auto opened = JournalRecovery::open(path_);
                EXPECT_TRUE(opened && *opened);
                EXPECT_EQ(FaultySystemCalls::lock(file, operation), -1);
                EXPECT_TRUE(std::move(**opened).remove());
            }
            return FaultySystemCalls::lock(file, operation);
        }

    private:
        std::string path_;
        bool hasLooked_ = false;
    } calls(path_);
    auto journal = JournalFile::create(path_, calls);
    ASSERT_TRUE(journal);
    EXPECT_TRUE(journal->append("one"));
    EXPECT_THAT(recordsIn(fileBytes(path_)), ElementsAre("one"));
}

TEST_F(JournalRecoveryTest, ANewFileThatNobodyLetsGoOfIsAnError) {
    FaultySystemCalls calls(Fault::failing(EWOULDBLOCK).from("lock", 0));
    const auto journal = JournalFile::create(path_, calls);
    ASSERT_FALSE(journal);
    EXPECT_EQ(journal.error(), SystemError{EWOULDBLOCK});
}

} // namespace
} // namespace quelm::test::journals
