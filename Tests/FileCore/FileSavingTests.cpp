#include "FileCore/FileSaving.h"
#include "FileCore/TemporaryFile.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/SaveScenario.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quelm::test {
namespace {

using testing::ElementsAre;
using Reason = SaveFailure::Reason;
using Step = SaveFailure::Step;

struct stat statusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
}

class FileSavingTests : public testing::Test {
protected:
    /// With a folder for backups beside the folder of the file.
    SaveOptions options() const {
        SaveOptions options;
        options.backupFolder = backups.path("backups");
        return options;
    }
    std::expected<SavedFile, SaveFailure> save(const std::string& path, const std::string& bytes = "new") const {
        return saveFile(path, produce(bytes), options());
    }
    Reason reasonOf(const std::string& path) const {
        const auto saved = save(path);
        EXPECT_FALSE(saved) << path;
        return saved ? Reason::system : saved.error().reason;
    }

    TemporaryFolder folder;
    TemporaryFolder backups;
};

TEST_F(FileSavingTests, TellsWhatTheFileIsAfterwards) {
    const std::string path = folder.write("a", "something longer");
    const auto saved = save(path);
    ASSERT_TRUE(saved);
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(saved->stamp, FileStamp::of(path));
    EXPECT_EQ(saved->checksum, ContentChecksum::of("new"));
    EXPECT_EQ(saved->path, path);
    EXPECT_TRUE(saved->isComplete);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(FileSavingTests, BytesAndFolderAreSynchronizedAroundTheReplacement) {
    const std::string path = folder.write("a", "old");
    FaultySystemCalls calls;
    SaveOptions watched = options();
    watched.calls = &calls;
    ASSERT_TRUE(saveFile(path, produce("new"), watched));
    std::vector<std::string> steps;
    for (const auto& call : calls.made()) {
        if (call.kind == "synchronize")
            steps.push_back(call.path == folder.path() ? "folder" : "file");
        else if (call.kind == "rename" || call.kind == "write")
            steps.push_back(call.kind);
    }
    EXPECT_THAT(steps, ElementsAre("write", "file", "rename", "folder"));
}

TEST_F(FileSavingTests, KeepsPermissionsOwnerAndExtendedAttributes) {
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::setxattr(path.c_str(), "user.color", "green", 5, 0), 0) << "the file system has attributes";
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(path.c_str(), 12'345, 54'321), 0);
    }
    for (const mode_t mode : {0600u, 0644u, 0666u, 0755u, 06755u}) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        const auto before = statusOf(path);
        const auto saved = save(path);
        ASSERT_TRUE(saved);
        EXPECT_TRUE(saved->isComplete);
        const auto after = statusOf(path);
        EXPECT_NE(after.st_ino, before.st_ino);
        EXPECT_EQ(after.st_mode, before.st_mode);
        EXPECT_EQ(after.st_uid, before.st_uid);
        EXPECT_EQ(after.st_gid, before.st_gid);
        std::array<char, 10> value{};
        EXPECT_EQ(::getxattr(path.c_str(), "user.color", value.data(), value.size()), 5);
        EXPECT_EQ(std::string(value.data()), "green");
    }
}

TEST_F(FileSavingTests, AnOwnerThatMayNotBeSetTakesItsRightsAlong) {
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::chmod(path.c_str(), 06775), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(path.c_str(), 12'345, 54'321), 0);
    }
    FaultySystemCalls calls(Fault::failing(EPERM).from("changeOwner", 0));
    SaveOptions refused = options();
    refused.calls = &calls;
    const auto saved = saveFile(path, produce("new"), refused);
    ASSERT_TRUE(saved);
    // Only root can have made the file somebody else's.
    EXPECT_EQ(saved->isComplete, ::geteuid() != 0);
    EXPECT_EQ(statusOf(path).st_mode & 07777, ::geteuid() == 0 ? 0705u : 06775u);
}

TEST_F(FileSavingTests, AttributesOfTheSystemThatMayNotBeSetAreLeftOutAndThoseOfTheUserAreNot) {
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::setxattr(path.c_str(), "user.color", "green", 5, 0), 0);
    FaultySystemCalls forbidden(Fault::failing(EPERM).at("setAttribute", 0));
    SaveOptions watched = options();
    watched.calls = &forbidden;
    const auto saved = saveFile(path, produce("new"), watched);
    ASSERT_TRUE(saved);
    EXPECT_FALSE(saved->isComplete);

    ASSERT_EQ(::setxattr(path.c_str(), "user.color", "green", 5, 0), 0);
    FaultySystemCalls full(Fault::failing(ENOSPC).at("setAttribute", 0));
    watched.calls = &full;
    const auto refused = saveFile(path, produce("newer"), watched);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), SaveFailure::at(Step::adopt, SystemError{ENOSPC}));
    EXPECT_EQ(folder.read("a"), "new");
}

constexpr const char* accessList = "system.posix_acl_access";

/// A list by which the owner and the user 1234 may read and write, and the owner's group and others may not; the
/// permissions of the file show the group what that user may.
std::string listForAnotherUser() {
    const auto entry = [](char tag, char rights, std::string_view id) {
        return std::string{tag, 0, rights, 0} + std::string(id);
    };
    const std::string_view none = "\xff\xff\xff\xff";
    return std::string("\x02\0\0\0", 4) + entry(0x01, 6, none) + entry(0x02, 6, std::string_view("\xd2\x04\0\0", 4)) +
           entry(0x04, 0, none) + entry(0x10, 6, none) + entry(0x20, 0, none);
}

std::string listOf(const std::string& path) {
    std::string list(1000, ' ');
    const ssize_t length = ::getxattr(path.c_str(), accessList, list.data(), list.size());
    list.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return list;
}

TEST_F(FileSavingTests, AListOfAccessRightsIsKeptOrItsRightsAreGone) {
    const std::string path = folder.write("a", "old");
    const std::string list = listForAnotherUser();
    ASSERT_EQ(::setxattr(path.c_str(), accessList, list.data(), list.size(), 0), 0) << "the file system has lists";
    ASSERT_EQ(statusOf(path).st_mode & 0777, 0660u);
    const auto saved = save(path);
    ASSERT_TRUE(saved);
    EXPECT_TRUE(saved->isComplete);
    EXPECT_EQ(listOf(path), list);
    EXPECT_EQ(statusOf(path).st_mode & 0777, 0660u);

    FaultySystemCalls forbidden(Fault::failing(EPERM).from("setAttribute", 0));
    SaveOptions watched = options();
    watched.calls = &forbidden;
    const auto without = saveFile(path, produce("newer"), watched);
    ASSERT_TRUE(without);
    EXPECT_FALSE(without->isComplete);
    EXPECT_EQ(statusOf(path).st_mode & 0777, 0600u);
}

TEST_F(FileSavingTests, AListThatTheFolderGivesNewFilesDoesNotComeToAnOldOne) {
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const std::string list = listForAnotherUser();
    ASSERT_EQ(::setxattr(folder.path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0), 0);
    const auto saved = save(path);
    ASSERT_TRUE(saved);
    EXPECT_TRUE(saved->isComplete);
    EXPECT_EQ(listOf(path), "");
    EXPECT_EQ(statusOf(path).st_mode & 0777, 0640u);
}

TEST_F(FileSavingTests, ANewFileHasTheUsersPermissions) {
    const mode_t before = ::umask(027);
    EXPECT_TRUE(save(folder.path("a")));
    ::umask(before);
    EXPECT_EQ(statusOf(folder.path("a")).st_mode & 07777, 0640u);
}

TEST_F(FileSavingTests, FollowsChainsOfLinksAndKeepsThem) {
    std::filesystem::create_directory(folder.path("data"));
    folder.write("data/a", "old");
    ASSERT_EQ(::symlink("a", folder.path("data/b").c_str()), 0);
    ASSERT_EQ(::symlink("data/b", folder.path("link").c_str()), 0);
    const auto saved = save(folder.path("link"));
    ASSERT_TRUE(saved);
    EXPECT_EQ(std::filesystem::canonical(saved->path), std::filesystem::canonical(folder.path("data/a")));
    EXPECT_EQ(folder.read("data/a"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("data/b")));
}

TEST_F(FileSavingTests, WhatIsNoFileIsRefusedUntouched) {
    EXPECT_EQ(reasonOf(folder.path()), Reason::folder);
    EXPECT_EQ(reasonOf("/dev/null"), Reason::notAFile);
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(reasonOf(folder.path("pipe")), Reason::notAFile);
    EXPECT_EQ(reasonOf(folder.path("none/a")), Reason::noFolder);
    EXPECT_EQ(reasonOf(folder.write("a", "old") + "/b"), Reason::noFolder);
    EXPECT_EQ(reasonOf(""), Reason::system);
    ASSERT_EQ(::symlink("circle", folder.path("circle").c_str()), 0);
    EXPECT_EQ(save(folder.path("circle")).error().error, SystemError{ELOOP});
    ASSERT_EQ(::symlink("gone/a", folder.path("lost").c_str()), 0);
    EXPECT_EQ(reasonOf(folder.path("lost")), Reason::noFolder);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a", "circle", "lost", "pipe"));
}

TEST_F(FileSavingTests, AFileWithHardLinksKeepsThemAndItsAttributes) {
    const std::string path = folder.write("a", "something longer");
    std::filesystem::create_hard_link(path, folder.path("b"));
    const auto before = statusOf(path);
    const auto saved = save(path);
    ASSERT_TRUE(saved);
    EXPECT_TRUE(saved->isComplete);
    EXPECT_EQ(saved->stamp, FileStamp::of(path));
    EXPECT_EQ(folder.read("b"), "new");
    EXPECT_EQ(statusOf(path).st_ino, before.st_ino);
    EXPECT_EQ(statusOf(backups.path("backups")).st_mode & 07777, 0700u);
    EXPECT_TRUE(std::filesystem::is_empty(backups.path("backups")));
}

TEST_F(FileSavingTests, WithoutAFolderForBackupsHardLinksKeepTheOldFile) {
    const std::string path = folder.write("a", "old");
    std::filesystem::create_hard_link(path, folder.path("b"));
    ASSERT_TRUE(saveFile(path, produce("new")));
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(folder.read("b"), "old");
}

TEST_F(FileSavingTests, TheHookSeesTheChecksumAndTheOldFileAndMayRefuse) {
    for (const bool hasLink : {false, true}) {
        const std::string path = folder.write("a", "old");
        if (hasLink)
            std::filesystem::create_hard_link(path, folder.path("b"));
        int calls = 0;
        SaveOptions asking = options();
        asking.willReplace = [&](const ContentChecksum& checksum) {
            ++calls;
            EXPECT_EQ(checksum, ContentChecksum::of("new"));
            EXPECT_EQ(folder.read("a"), "old");
            return calls > 1;
        };
        const auto refused = saveFile(path, produce("new"), asking);
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error().reason, Reason::notProduced);
        EXPECT_EQ(folder.read("a"), "old");
        EXPECT_EQ(folder.names().size(), hasLink ? 2u : 1u);
        ASSERT_TRUE(saveFile(path, produce("new"), asking));
        EXPECT_EQ(calls, 2);
        EXPECT_EQ(folder.read("a"), "new");
    }
}

TEST_F(FileSavingTests, BytesThatEndEarlyAreThrownOrCancelledLeaveTheFileAsItWas) {
    for (const bool hasLink : {false, true}) {
        const std::string path = folder.write("a", "old");
        if (hasLink)
            std::filesystem::create_hard_link(path, folder.path("b"));
        const auto half = [](const TakePiece& take) {
            EXPECT_TRUE(take("half"));
            return false;
        };
        EXPECT_EQ(saveFile(path, half, options()).error().reason, Reason::notProduced);
        const auto thrown = [](const TakePiece& take) -> bool {
            take("half");
            throw std::bad_alloc();
        };
        EXPECT_THROW((void)saveFile(path, thrown, options()), std::bad_alloc);

        std::stop_source source;
        SaveOptions stopped = options();
        stopped.stop = source.get_token();
        const auto stopping = [&](const TakePiece& take) {
            EXPECT_TRUE(take("half"));
            source.request_stop();
            EXPECT_FALSE(take("more"));
            return false;
        };
        EXPECT_EQ(saveFile(path, stopping, stopped).error().reason, Reason::cancelled);
        EXPECT_EQ(folder.read("a"), "old");
        EXPECT_EQ(folder.names().size(), hasLink ? 2u : 1u);
    }
    EXPECT_TRUE(std::filesystem::is_empty(backups.path("backups")));
}

TEST_F(FileSavingTests, TellsOfItsProgress) {
    WorkProgress progress;
    progress.setTotal(200'000);
    SaveOptions watched = options();
    watched.progress = &progress;
    ASSERT_TRUE(saveFile(folder.path("a"), produce(std::string(100'000, 'x')), watched));
    EXPECT_EQ(progress.fraction(), 0.5);
}

TEST_F(FileSavingTests, WhatAKilledProcessLeftIsClearedAwayAndWhatIsAtWorkIsNot) {
    folder.write(".quelm-1-0.tmp", "left");
    folder.write(".quelm-1-x.tmp", "another program's");
    auto atWork = TemporaryFile::createPrivate(folder.path());
    ASSERT_TRUE(atWork);
    ASSERT_TRUE(save(folder.path("a")));
    EXPECT_EQ(folder.names().size(), 3u);
    EXPECT_EQ(folder.read(".quelm-1-0.tmp"), "(no file)");
    EXPECT_EQ(folder.read(".quelm-1-x.tmp"), "another program's");
    ASSERT_TRUE(atWork->moveTo(folder.path("b")));
    EXPECT_THAT(folder.names(), ElementsAre(".quelm-1-x.tmp", "a", "b"));
}

/// What `work` returns in a process of a user whom permissions bind, to whom both folders and the files belong.
int asOrdinaryUser(const TemporaryFolder& folder, const TemporaryFolder& backups, const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        bool isSet = true;
        if (::geteuid() == 0) {
            for (const std::string& name : folder.names())
                isSet = isSet && ::chown(folder.path(name).c_str(), nobody, nobody) == 0;
            isSet = isSet && ::chown(folder.path().c_str(), nobody, nobody) == 0 &&
                    ::chown(backups.path().c_str(), nobody, nobody) == 0 && ::setresuid(nobody, nobody, nobody) == 0;
        }
        ::_exit(isSet ? work() : 255);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    return WEXITSTATUS(status);
}

constexpr int savedWell = 100;

TEST_F(FileSavingTests, AFileInAFolderThatMayNotBeWrittenIsWrittenInPlace) {
    const std::string path = folder.write("a", "something longer");
    const auto before = statusOf(path);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0500), 0);
    const auto trySaving = [&](const std::string& name, const SaveOptions& with) {
        return asOrdinaryUser(folder, backups, [&] {
            const auto saved = saveFile(folder.path(name), produce("new"), with);
            return saved ? savedWell : static_cast<int>(saved.error().reason);
        });
    };
    EXPECT_EQ(trySaving("a", {}), static_cast<int>(Reason::readOnlyFolder));
    EXPECT_EQ(folder.read("a"), "something longer");
    EXPECT_EQ(trySaving("b", options()), static_cast<int>(Reason::readOnlyFolder));
    EXPECT_EQ(trySaving("a", options()), savedWell);
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(statusOf(path).st_ino, before.st_ino);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
    ASSERT_EQ(::chmod(folder.path().c_str(), 0700), 0);
}

TEST_F(FileSavingTests, AFileThatMayNotBeWrittenIsRefused) {
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    const int reason = asOrdinaryUser(folder, backups, [&] {
        const auto saved = save(path);
        return saved ? savedWell : static_cast<int>(saved.error().reason);
    });
    EXPECT_EQ(reason, static_cast<int>(Reason::readOnlyFile));
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

} // namespace
} // namespace quelm::test
