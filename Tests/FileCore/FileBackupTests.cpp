#include "FileCore/BackupFile.h"
#include "FileCore/BackupFormat.h"
#include "FileCore/FileBackup.h"
#include "FileCore/FileDescriptor.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace quelm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileBackupTests : public testing::Test {
protected:
    /// A backup of the file "a" that a process left when it was killed while writing.
    std::string leaveBackup(std::string_view before, std::string_view after, const std::string& name = "a") const {
        const auto file = openFile(files.write(name, before).c_str(), O_RDWR);
        auto backup = BackupFile::create(backups.path("deep/folder"), files.path(name), file->number(),
                                         ContentChecksum::of(after), SystemCalls::real());
        EXPECT_TRUE(backup);
        backup->setNeeded();
        return backup->path();
    }
    std::vector<FileBackup> found() const { return findBackups(backups.path("deep/folder")); }

    TemporaryFolder files;
    TemporaryFolder backups;
};

TEST_F(FileBackupTests, IsFoundWithItsContentsUntilItIsRemoved) {
    const std::string path = leaveBackup("before", "after");
    files.write("a", "aftere");
    const auto all = found();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].path, path);
    EXPECT_EQ(all[0].original, files.path("a"));
    EXPECT_EQ(all[0].checksum, ContentChecksum::of("before"));
    const auto bytes = readBackup(all[0]);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->view(), "before");
    EXPECT_TRUE(bytes->isPadded());
    removeBackup(all[0]);
    removeBackup(all[0]);
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(readBackup(all[0]));
}

TEST_F(FileBackupTests, NobodyElseMayReadIt) {
    const std::string path = leaveBackup("before", "after");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::filesystem::status(backups.path("deep")).permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(std::filesystem::status(backups.path("deep/folder")).permissions(), std::filesystem::perms(0700));
}

TEST_F(FileBackupTests, OneWhoseFileHoldsTheOldOrAllOfTheNewContentsGoes) {
    for (const char* contents : {"before", "after"}) {
        const std::string path = leaveBackup("before", "after");
        files.write("a", contents);
        EXPECT_THAT(found(), IsEmpty());
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST_F(FileBackupTests, OneWhoseFileIsGoneStays) {
    leaveBackup("before", "after");
    std::filesystem::remove(files.path("a"));
    EXPECT_EQ(found().size(), 1u);
}

TEST_F(FileBackupTests, OneThatIsNotWholeGoes) {
    const std::string path = leaveBackup("before", "after");
    files.write("a", "torn");
    const auto size = std::filesystem::file_size(path);
    for (std::uintmax_t cut = 0; cut < size; ++cut) {
        const std::string copy = backups.path("deep/folder/1-1.backup");
        std::filesystem::copy_file(path, copy);
        std::filesystem::resize_file(copy, cut);
        EXPECT_EQ(found().size(), 1u) << cut;
        EXPECT_FALSE(std::filesystem::exists(copy)) << cut;
    }
}

TEST_F(FileBackupTests, AnyChangedByteIsNoticed) {
    const std::string path = leaveBackup("before", "after");
    files.write("a", "torn");
    const std::string name = path.substr(backups.path().size() + 1);
    const std::string whole = backups.read(name);
    for (std::size_t position = 0; position < whole.size(); ++position) {
        std::string changed = whole;
        changed[position] = static_cast<char>(changed[position] ^ 0x10);
        backups.write(name, changed);
        const auto all = found();
        ASSERT_EQ(all.size(), 1u) << position;
        EXPECT_TRUE(all[0].isDamaged) << position;
        EXPECT_EQ(all[0].checksum, ContentChecksum()) << position;
        EXPECT_FALSE(readBackup(all[0])) << position;
        EXPECT_EQ(backups.read(name), changed) << "the only copy of a file that is torn stays, at " << position;
    }
}

TEST_F(FileBackupTests, ADamagedOneOfAFileThatIsWholeGoesAndOneThatIsTooLongStays) {
    const std::string path = leaveBackup("before", "after");
    const std::string name = path.substr(backups.path().size() + 1);
    std::string whole = backups.read(name);
    const std::size_t contents = whole.find("before");
    backups.write(name, whole + "x");
    files.write("a", "torn");
    ASSERT_EQ(found().size(), 1u);
    EXPECT_TRUE(found()[0].isDamaged);
    EXPECT_EQ(found()[0].original, files.path("a"));
    whole[contents] = 'B';
    backups.write(name, whole);
    ASSERT_EQ(found().size(), 1u);
    files.write("a", "after");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(FileBackupTests, OneWhoseTailHadNotReachedTheDeviceGoes) {
    const std::string path = leaveBackup("before", "after");
    files.write("a", "torn");
    const auto size = std::filesystem::file_size(path);
    std::filesystem::resize_file(path, size - backupFormat::tailSize);
    std::filesystem::resize_file(path, size);
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(FileBackupTests, OneThatIsFoundIsLockedForAsLongAsItIsKept) {
    leaveBackup("before", "after");
    files.write("a", "torn");
    {
        const auto all = found();
        ASSERT_EQ(all.size(), 1u);
        const FileBackup copy = all[0];
        EXPECT_THAT(found(), IsEmpty()) << "somebody has it";
    }
    EXPECT_EQ(found().size(), 1u);
}

TEST_F(FileBackupTests, OneThatIsKeptAsideIsNotFoundAgainAndTakesNoOthersPlace) {
    for (const char* suffix : {".apartado", ".apartado-2"}) {
        const std::string path = leaveBackup("before", "after");
        files.write("a", "torn");
        const auto all = found();
        ASSERT_EQ(all.size(), 1u);
        const auto aside = keepBackupAside(all[0]);
        ASSERT_TRUE(aside);
        EXPECT_EQ(*aside, path + suffix);
        EXPECT_TRUE(std::filesystem::exists(*aside));
        EXPECT_THAT(found(), IsEmpty());
    }
}

/// Calls in the middle of which another process does something, once.
class MeddledCalls : public FaultySystemCalls {
public:
    std::function<void()> meddle;

    int lock(int file, int operation) override {
        if (const auto once = std::exchange(meddle, nullptr))
            once();
        return FaultySystemCalls::lock(file, operation);
    }
};

TEST_F(FileBackupTests, ANewOneUnderTheNameOfOneThatHasJustGoneIsLeftAlone) {
    const std::string path = leaveBackup("old", "after");
    files.write("a", "old"); // of no use
    MeddledCalls calls;
    std::optional<BackupFile> needed;
    calls.meddle = [&] {
        std::filesystem::remove(path);
        const auto file = openFile(files.write("b", "before").c_str(), O_RDWR);
        needed.emplace(BackupFile::create(backups.path("deep/folder"), files.path("b"), file->number(),
                                          ContentChecksum::of("after"), SystemCalls::real())
                           .value());
        needed->setNeeded();
        ASSERT_EQ(needed->path(), path);
    };
    EXPECT_THAT(findBackups(backups.path("deep/folder"), calls), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(path)) << "a save at work needs it";
}

TEST_F(FileBackupTests, OneThatGivesOtherBytesBackIsNotRestoredInSilence) {
    const auto file = openFile(files.write("a", "before").c_str(), O_RDWR);
    auto backup = BackupFile::create(backups.path(), files.path("a"), file->number(), ContentChecksum::of("after"),
                                     SystemCalls::real());
    ASSERT_TRUE(backup);
    backup->setNeeded();
    files.write("a", "torn");
    const std::string name = backup->path().substr(backups.path().size() + 1);
    std::string bytes = backups.read(name);
    bytes[bytes.find("before")] = 'B';
    const auto damaged = openFile(backup->path().c_str(), O_WRONLY);
    ASSERT_TRUE(writeAll(damaged->number(), bytes));
    EXPECT_EQ(backup->restore(file->number()), std::unexpected(SystemError{EIO}));
}

TEST_F(FileBackupTests, OwnOnesOfAFileGoAndThoseOfOtherFilesAndProcessesStay) {
    const std::string own = leaveBackup("before", "after");
    const std::string other = leaveBackup("before", "after", "b");
    const std::string foreign = backups.path("deep/folder/1-0.backup");
    std::filesystem::copy_file(own, foreign);
    removeOwnBackups(files.path("a"), backups.path("deep/folder"));
    EXPECT_FALSE(std::filesystem::exists(own));
    EXPECT_TRUE(std::filesystem::exists(other));
    EXPECT_TRUE(std::filesystem::exists(foreign));
}

TEST_F(FileBackupTests, OneThatIsAtWorkIsNotListed) {
    const auto file = openFile(files.write("a", "before").c_str(), O_RDWR);
    auto backup = BackupFile::create(backups.path(), files.path("a"), file->number(), ContentChecksum::of("after"),
                                     SystemCalls::real());
    ASSERT_TRUE(backup);
    backup->setNeeded();
    files.write("a", "torn");
    EXPECT_THAT(findBackups(backups.path()), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(backup->path()));
    ASSERT_TRUE(backup->restore(file->number()));
    EXPECT_EQ(files.read("a"), "before");
    ASSERT_TRUE(backup->remove());
    EXPECT_THAT(backups.names(), IsEmpty());
}

TEST_F(FileBackupTests, SeveralComeOldestFirstAndOtherFilesAreLeftAlone) {
    const std::string first = leaveBackup("1", "x", "one");
    const std::string second = leaveBackup("2", "x", "two");
    files.write("one", "torn");
    files.write("two", "torn");
    backups.write("deep/folder/another", "file");
    const auto time = std::filesystem::last_write_time(first);
    std::filesystem::last_write_time(second, time - std::chrono::hours(1));
    std::vector<std::string> originals;
    for (const FileBackup& backup : found())
        originals.push_back(backup.original);
    EXPECT_THAT(originals, ElementsAre(files.path("two"), files.path("one")));
    EXPECT_EQ(backups.read("deep/folder/another"), "file");
}

TEST_F(FileBackupTests, AFolderThatIsNotThereHasNone) {
    EXPECT_THAT(findBackups(backups.path("none")), IsEmpty());
}

} // namespace
} // namespace quelm::test
