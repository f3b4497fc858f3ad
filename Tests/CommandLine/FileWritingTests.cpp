#include "CommandLine/FileWriting.h"
#include "Tests/CommandLine/TemporaryFolder.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm {
namespace {

using testing::ElementsAre;

struct stat statusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
}

unsigned permissionsOf(const std::string& path) {
    return statusOf(path).st_mode & 07777;
}

std::string reasonOfFailure(const std::string& path) {
    const auto written = writeFile(path, "new");
    return written ? "(written)" : written.error().description();
}

TEST(FileWriting, MakesANewFileWithTheUsersPermissions) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(027);
    EXPECT_TRUE(writeFile(folder.path("a"), "new"));
    ::umask(before);
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(permissionsOf(folder.path("a")), 0640u);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(FileWriting, ReplacesAFileByAnotherOneAndLeavesNothingElseBehind) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "something longer");
    const int reader = ::open(path.c_str(), O_RDONLY);
    EXPECT_TRUE(writeFile(path, "new"));
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
    // Whoever had the old file open still reads all of it.
    std::string old(100, ' ');
    old.resize(static_cast<std::size_t>(::read(reader, old.data(), old.size())));
    EXPECT_EQ(old, "something longer");
    ::close(reader);
}

TEST(FileWriting, KeepsThePermissionsOfTheFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    for (const unsigned permissions : {0600u, 0644u, 0666u, 0755u}) {
        ASSERT_EQ(::chmod(path.c_str(), permissions), 0);
        EXPECT_TRUE(writeFile(path, "new"));
        EXPECT_EQ(permissionsOf(path), permissions);
    }
}

TEST(FileWriting, FollowsSymbolicLinksAndKeepsThem) {
    const TemporaryFolder folder;
    ASSERT_TRUE(std::filesystem::create_directory(folder.path("data")));
    folder.write("data/a", "old");
    ASSERT_EQ(::symlink("a", folder.path("data/b").c_str()), 0);
    ASSERT_EQ(::symlink("data/b", folder.path("relative").c_str()), 0);
    ASSERT_EQ(::symlink(folder.path("data/a").c_str(), folder.path("absolute").c_str()), 0);

    EXPECT_TRUE(writeFile(folder.path("relative"), "new"));
    EXPECT_EQ(folder.read("data/a"), "new");
    EXPECT_TRUE(writeFile(folder.path("absolute"), "newer"));
    EXPECT_EQ(folder.read("data/a"), "newer");
    for (const char* link : {"data/b", "relative", "absolute"})
        EXPECT_TRUE(std::filesystem::is_symlink(folder.path(link))) << link;
    EXPECT_THAT(folder.names(), ElementsAre("absolute", "data", "relative"));
}

TEST(FileWriting, MakesTheFileThatALinkLeadsTo) {
    const TemporaryFolder folder;
    ASSERT_EQ(::symlink("a", folder.path("link").c_str()), 0);
    EXPECT_TRUE(writeFile(folder.path("link"), "new"));
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
}

TEST(FileWriting, RefusesLinksThatLeadInACircle) {
    const TemporaryFolder folder;
    ASSERT_EQ(::symlink("a", folder.path("b").c_str()), 0);
    ASSERT_EQ(::symlink("b", folder.path("a").c_str()), 0);
    EXPECT_EQ(reasonOfFailure(folder.path("a")), "hay demasiados enlaces simbólicos en la ruta");
    EXPECT_THAT(folder.names(), ElementsAre("a", "b"));
}

TEST(FileWriting, WritesIntoTheWorkingFolder) {
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_TRUE(writeFile("a", "new"));
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.read("a"), "new");
}

TEST(FileWriting, WritesToADeviceAsItIs) {
    EXPECT_TRUE(writeFile("/dev/null", "new"));
    EXPECT_TRUE(S_ISCHR(statusOf("/dev/null").st_mode));
    EXPECT_EQ(reasonOfFailure("/dev/full"), "no queda espacio");
    EXPECT_TRUE(S_ISCHR(statusOf("/dev/full").st_mode));
}

TEST(FileWriting, WritesToAFileWithoutNameThroughItsDescriptor) {
    const TemporaryFolder folder;
    const int descriptor = ::open(folder.write("a", "").c_str(), O_RDWR);
    ASSERT_EQ(::unlink(folder.path("a").c_str()), 0);
    EXPECT_TRUE(writeFile("/proc/self/fd/" + std::to_string(descriptor), "new"));
    std::string bytes(100, ' ');
    bytes.resize(static_cast<std::size_t>(::pread(descriptor, bytes.data(), bytes.size(), 0)));
    EXPECT_EQ(bytes, "new");
    EXPECT_THAT(folder.names(), ElementsAre());
    ::close(descriptor);
}

TEST(FileWriting, LeavesNothingOfALongerFileWithoutName) {
    const TemporaryFolder folder;
    const int descriptor = ::open(folder.write("a", "something longer").c_str(), O_RDWR);
    ASSERT_EQ(::unlink(folder.path("a").c_str()), 0);
    EXPECT_TRUE(writeFile("/proc/self/fd/" + std::to_string(descriptor), "new"));
    EXPECT_EQ(statusOf("/proc/self/fd/" + std::to_string(descriptor)).st_size, 3);
    ::close(descriptor);
}

TEST(FileWriting, DoesNotWriteThroughToAFileThatHasOtherNames) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    std::filesystem::create_hard_link(path, folder.path("b"));
    const int descriptor = ::open(path.c_str(), O_RDWR);
    ASSERT_EQ(::unlink(path.c_str()), 0);
    EXPECT_EQ(reasonOfFailure("/proc/self/fd/" + std::to_string(descriptor)), "está en uso");
    EXPECT_EQ(folder.read("b"), "old");
    ::close(descriptor);
}

TEST(FileWriting, LeavesAFileThatSomebodyElseWritesMeanwhile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    const auto written = writeFile(path, [&](const WritePiece& write) {
        folder.write("a", "theirs");
        return write("new");
    });
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().description(), "está en uso");
    EXPECT_EQ(folder.read("a"), "theirs");
}

TEST(FileWriting, TellsWhyAFileCannotBeWritten) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a", "old");
    EXPECT_EQ(reasonOfFailure(folder.path()), "es una carpeta");
    EXPECT_EQ(reasonOfFailure(file + "/b"), "una parte de la ruta no es una carpeta");
    EXPECT_EQ(reasonOfFailure(folder.path("none/b")), "no existe");
    EXPECT_EQ(reasonOfFailure(""), "no existe");
    EXPECT_EQ(folder.read("a"), "old");
}

/// In a process that is about to end: becomes a user whom permissions bind, to whom the folder belongs.
void becomeOrdinaryUser(const TemporaryFolder& folder) {
    if (::geteuid() != 0)
        return;
    constexpr uid_t nobody = 65534;
    for (const std::string& name : folder.names())
        EXPECT_EQ(::chown(folder.path(name).c_str(), nobody, nobody), 0);
    EXPECT_EQ(::chown(folder.path().c_str(), nobody, nobody), 0);
    EXPECT_EQ(::setresuid(nobody, nobody, nobody), 0);
}

[[noreturn]] void tellReasonOfFailure(const TemporaryFolder& folder, const std::string& path) {
    becomeOrdinaryUser(folder);
    std::fprintf(stderr, "reason: %s", reasonOfFailure(path).c_str());
    ::_exit(0);
}

TEST(FileWriting, AFileThatTheUserMayNotWriteIsNotReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    EXPECT_EXIT(tellReasonOfFailure(folder, path), testing::ExitedWithCode(0), "reason: permiso denegado");
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(FileWriting, AFolderThatTheUserMayNotWriteGetsNoFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0500), 0);
    EXPECT_EXIT(tellReasonOfFailure(folder, path), testing::ExitedWithCode(0), "reason: permiso denegado");
    EXPECT_EXIT(tellReasonOfFailure(folder, folder.path("b")), testing::ExitedWithCode(0), "reason: permiso denegado");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0700), 0);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

[[noreturn]] void tellReasonBelowLimit(const std::string& path, rlim_t largestFile, std::size_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limits{largestFile, largestFile};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limits), 0);
    const auto written = writeFile(path, std::string(size, 'x'));
    std::fprintf(stderr, "reason: %s", written ? "(written)" : written.error().description().c_str());
    ::_exit(0);
}

TEST(FileWriting, AFileThatCannotBeWrittenWholeKeepsItsOldBytes) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    EXPECT_EXIT(tellReasonBelowLimit(path, 1000, 5000), testing::ExitedWithCode(0),
                "reason: el archivo sería demasiado grande");
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

} // namespace
} // namespace quelm
