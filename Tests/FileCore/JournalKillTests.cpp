#include "FileCore/JournalRecovery.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"
#include "Tests/FileCore/Journals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quelm::test::journals {
namespace {

// A value that a process and its children see.
template <typename Value>
class SharedValue {
public:
    SharedValue()
        : value_(new (::mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                     Value()) {}
    SharedValue(const SharedValue&) = delete;
    SharedValue& operator=(const SharedValue&) = delete;
    ~SharedValue() { ::munmap(value_, sizeof(Value)); }

    Value& operator*() const { return *value_; }
    Value* operator->() const { return value_; }

private:
    Value* value_;
};

enum class Death { killed, none };

template <typename Work>
Death runAndDie(const Work& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
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

class JournalKill : public testing::TestWithParam<Fault> {};

TEST_P(JournalKill, WhatWasAppendedSurvivesAKillAtEachCall) {
    const TemporaryFolder folder;
    const std::vector<std::string> records = payloads();
    for (int n = 0;; ++n) {
        const std::string path = folder.path(std::to_string(n) + ".journal");
        SharedValue<Progress> progress;
        const Death death = runAndDie([&] {
            FaultySystemCalls calls(GetParam().at(n));
            writeJournal(path, records, calls, *progress);
        });
        const JournalContents contents = JournalContents::read(SharedText(fileBytes(path)));
        ASSERT_TRUE(isPrefix(recordsOf(contents), records)) << n;
        ASSERT_GE(contents.records.size(), progress->appended) << n;
        // One more at most: the append that did not return.
        ASSERT_LE(contents.records.size(), progress->appended + 1) << n;
        ASSERT_NE(contents.end, JournalContents::End::damaged) << n;
        ASSERT_NE(contents.end, JournalContents::End::unknown) << n;
        if (death == Death::none) {
            ASSERT_EQ(progress->appended, records.size());
            ASSERT_GT(n, 30);
            return;
        }
        // Whoever finds it goes on with it.
        auto recovery = JournalRecovery::open(path);
        ASSERT_TRUE(recovery) << n;
        if (!*recovery) {
            ASSERT_FALSE(progress->isCreated) << n;
            continue;
        }
        auto journal = std::move(**recovery).continueWriting();
        ASSERT_TRUE(journal && journal->append("after the end")) << n;
        const std::vector<std::string> there = recordsIn(fileBytes(path));
        ASSERT_EQ(there.size(), contents.records.size() + 1) << n;
        ASSERT_EQ(there.back(), "after the end") << n;
    }
}

TEST_P(JournalKill, GoingOnWithAJournalSurvivesAKillAtEachCall) {
    const TemporaryFolder folder;
    const std::string whole = bytesOf({"one", "two", "three"});
    for (int n = 0;; ++n) {
        const std::string path = folder.write("a.journal", whole.substr(0, whole.size() - 1));
        const Death death = runAndDie([&] {
            FaultySystemCalls calls(GetParam().at(n));
            auto recovery = JournalRecovery::open(path, calls);
            auto journal = std::move(**recovery).continueWriting();
            if (!journal || !journal->append("more"))
                ::_exit(1);
        });
        const std::vector<std::string> there = recordsIn(fileBytes(path));
        ASSERT_TRUE(isPrefix({"one", "two"}, there)) << n;
        ASSERT_TRUE(isPrefix(there, {"one", "two", "more"})) << n;
        if (death == Death::none) {
            ASSERT_EQ(there.size(), 3) << n;
            return;
        }
    }
}

TEST_P(JournalKill, AJournalIsKeptAsideOrStillThere) {
    const TemporaryFolder folder;
    const std::string bytes = bytesOf({"one"});
    for (int n = 0;; ++n) {
        const std::string path = folder.write("a.journal", bytes);
        const Death death = runAndDie([&] {
            FaultySystemCalls calls(GetParam().at(n));
            auto recovery = JournalRecovery::open(path, calls);
            if (!std::move(**recovery).keepAside())
                ::_exit(1);
        });
        ASSERT_EQ(folder.names().size(), 1) << n;
        ASSERT_EQ(folder.read(folder.names().front()), bytes) << n;
        if (death == Death::none) {
            ASSERT_THAT(folder.names(), testing::ElementsAre("a.journal.apartado"));
            return;
        }
        ASSERT_EQ(::unlink(folder.path(folder.names().front()).c_str()), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(AtEachCall, JournalKill, testing::Values(Fault::killingAfter(), Fault::killingInside()),
                         [](const auto& each) {
                             return each.param.effect == Fault::Effect::killAfter ? "After" : "Inside";
                         });

} // namespace
} // namespace quelm::test::journals
