#include "FileCore/FileSaving.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/SaveScenario.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Somebody else writes the file while it is being saved.

namespace quelm::test {
namespace {

using testing::ElementsAre;
using Reason = SaveFailure::Reason;

class FileSavingMeanwhileTests : public testing::TestWithParam<bool> {
protected:
    FileSavingMeanwhileTests() {
        if (isInPlace())
            std::filesystem::create_hard_link(path, folder.path("b"));
    }
    bool isInPlace() const { return GetParam(); }

    /// Saves "new"; somebody does something right before the file becomes that, when all the bytes are there.
    std::expected<SavedFile, SaveFailure> saveWhile(const std::function<void()>& meddle) const {
        SaveOptions options;
        options.backupFolder = backups.path("backups");
        options.willReplace = [&](const ContentChecksum&) {
            meddle();
            return true;
        };
        return saveFile(path, produce("new"), options);
    }
    void expectRefusal(const std::expected<SavedFile, SaveFailure>& saved) const {
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().reason, Reason::changedMeanwhile) << describe(saved.error());
        EXPECT_EQ(saved.error().found, FileStamp::of(path));
        EXPECT_TRUE(saved.error().backup.empty());
        EXPECT_TRUE(!isInPlace() || std::filesystem::is_empty(backups.path("backups")));
    }

    TemporaryFolder folder;
    TemporaryFolder backups;
    const std::string path = folder.write("a", "old");
};

TEST_P(FileSavingMeanwhileTests, WhatSomebodyWritesIntoTheFileStays) {
    expectRefusal(saveWhile([&] { folder.write("a", "theirs"); }));
    EXPECT_EQ(folder.read("a"), "theirs");
}

TEST_P(FileSavingMeanwhileTests, WhatSomebodyWritesOfTheSameLengthStays) {
    expectRefusal(saveWhile([&] {
        folder.write("a", "OLD");
        const auto time = std::filesystem::last_write_time(path);
        std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
    }));
    EXPECT_EQ(folder.read("a"), "OLD");
}

TEST_P(FileSavingMeanwhileTests, AFileThatTakesItsPlaceStays) {
    expectRefusal(saveWhile([&] { std::filesystem::rename(folder.write("c", "theirs"), path); }));
    EXPECT_EQ(folder.read("a"), "theirs");
}

TEST_P(FileSavingMeanwhileTests, TheNextSaveOverThatStateWorks) {
    expectRefusal(saveWhile([&] { folder.write("a", "theirs"); }));
    EXPECT_TRUE(saveWhile([] {}));
    EXPECT_EQ(folder.read("a"), "new");
}

INSTANTIATE_TEST_SUITE_P(ReplacedAndInPlace, FileSavingMeanwhileTests, testing::Bool());

TEST(FileSavingMeanwhile, AFileThatAppearsWhereNoneWasStays) {
    const TemporaryFolder folder;
    SaveOptions options;
    options.willReplace = [&](const ContentChecksum&) {
        folder.write("a", "theirs");
        return true;
    };
    const auto saved = saveFile(folder.path("a"), produce("new"), options);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().reason, Reason::changedMeanwhile);
    EXPECT_EQ(folder.read("a"), "theirs");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(FileSavingMeanwhile, AFileThatGoesIsMadeAnew) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    SaveOptions options;
    options.willReplace = [&](const ContentChecksum&) { return std::filesystem::remove(path); };
    EXPECT_TRUE(saveFile(path, produce("new"), options));
    EXPECT_EQ(folder.read("a"), "new");
}

TEST(FileSavingMeanwhile, AFileInPlaceThatGoesIsNotWrittenUnderItsOtherName) {
    const TemporaryFolder folder;
    const TemporaryFolder backups;
    const std::string path = folder.write("a", "old");
    std::filesystem::create_hard_link(path, folder.path("b"));
    SaveOptions options;
    options.backupFolder = backups.path();
    options.willReplace = [&](const ContentChecksum&) { return std::filesystem::remove(path); };
    const auto saved = saveFile(path, produce("new"), options);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().error, SystemError{ENOENT});
    EXPECT_EQ(folder.read("b"), "old");
    EXPECT_TRUE(backups.names().empty());
}

} // namespace
} // namespace quelm::test
