#include "Tests/FileCore/SimulatedDisk.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/file.h>

namespace quelm::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::StartsWith;

void writeTo(SimulatedDisk& disk, const std::string& path, std::string_view bytes, int flags = O_WRONLY | O_CREAT) {
    const int file = disk.open(path.c_str(), flags, 0600);
    ASSERT_GE(file, 0);
    ASSERT_EQ(disk.write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ASSERT_EQ(disk.close(file), 0);
}

void synchronize(SimulatedDisk& disk, const std::string& path) {
    const int file = disk.open(path.c_str(), O_RDONLY, 0);
    ASSERT_EQ(disk.synchronize(file), 0);
    ASSERT_EQ(disk.close(file), 0);
}

// All contents of a file that losses of power leave; "(none)" for no file.
std::set<std::string> survivors(const SimulatedDisk& disk, const std::string& path) {
    std::set<std::string> found;
    for (std::uint32_t seed = 0; seed < 400; ++seed)
        found.insert(SimulatedDisk(disk.afterPowerLoss(seed)).contents(path).value_or("(none)"));
    return found;
}

TEST(SimulatedDisk, WhatWasThereFromTheBeginningSurvives) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "old");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("old"));
}

TEST(SimulatedDisk, ANameAndItsBytesMayBeLostEachForItself) {
    SimulatedDisk disk;
    disk.addFolder("/d");
    writeTo(disk, "/d/a", "new");
    EXPECT_THAT(survivors(disk, "/d/a"),
                ElementsAre("", testing::StrEq(std::string(1, '\0')), testing::StrEq(std::string(2, '\0')),
                            testing::StrEq(std::string(3, '\0')), "(none)", "n", "ne", "new"));
    synchronize(disk, "/d/a");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("(none)", "new"));
    synchronize(disk, "/d");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("new"));
}

TEST(SimulatedDisk, AFolderThatIsSynchronizedDoesNotKeepTheBytes) {
    SimulatedDisk disk;
    disk.addFolder("/d");
    writeTo(disk, "/d/a", "new");
    synchronize(disk, "/d");
    const auto found = survivors(disk, "/d/a");
    EXPECT_THAT(found, Contains(""));
    EXPECT_THAT(found, Contains("new"));
    EXPECT_THAT(found, testing::Not(Contains("(none)")));
}

TEST(SimulatedDisk, ARenameLeavesTheOldFileOrTheNewOne) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "old");
    writeTo(disk, "/d/b", "new");
    synchronize(disk, "/d/b");
    ASSERT_EQ(disk.rename("/d/b", "/d/a"), 0);
    EXPECT_EQ(disk.contents("/d/a"), "new");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("new", "old"));
    synchronize(disk, "/d");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("new"));
}

TEST(SimulatedDisk, ARenameOfUnsafeBytesMayLeaveNothing) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "old");
    writeTo(disk, "/d/b", "new");
    ASSERT_EQ(disk.rename("/d/b", "/d/a"), 0);
    EXPECT_THAT(survivors(disk, "/d/a"), Contains(""));
}

TEST(SimulatedDisk, BytesThatWereSafeStayWhenMoreAreAppended) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "safe");
    writeTo(disk, "/d/a", std::string(2000, 'x'), O_WRONLY | O_APPEND);
    const auto found = survivors(disk, "/d/a");
    EXPECT_THAT(found, Each(StartsWith("safe")));
    // Sectors are lost in any combination, also before others that are not.
    EXPECT_THAT(found, Contains(testing::AllOf(testing::HasSubstr(std::string(100, '\0') + "x"),
                                               testing::SizeIs(testing::Gt(1024)))));
    EXPECT_GT(found.size(), 50U);
}

TEST(SimulatedDisk, ANameThatWasRemovedMayComeBackUntilItsFolderIsSynchronized) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "old");
    ASSERT_EQ(disk.unlink("/d/a"), 0);
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("(none)", "old"));
    synchronize(disk, "/d");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("(none)"));
}

TEST(SimulatedDisk, ChangesOfANameInTwoFoldersDoNotComeBackEither) {
    SimulatedDisk disk;
    disk.addFolder("/d");
    disk.addFolder("/e");
    writeTo(disk, "/d/a", "new");
    synchronize(disk, "/d/a");
    ASSERT_EQ(disk.rename("/d/a", "/e/a"), 0);
    synchronize(disk, "/e");
    EXPECT_THAT(survivors(disk, "/e/a"), ElementsAre("new"));
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("(none)"));
    writeTo(disk, "/d/a", "again");
    synchronize(disk, "/d/a");
    EXPECT_THAT(survivors(disk, "/d/a"), ElementsAre("(none)", "again"));
}

TEST(SimulatedDisk, LocksBelongToADescriptor) {
    SimulatedDisk disk;
    disk.addFile("/a", "");
    const int one = disk.open("/a", O_RDWR, 0);
    const int two = disk.open("/a", O_RDWR, 0);
    constexpr int takeNow = LOCK_EX | LOCK_NB;
    EXPECT_EQ(disk.lock(one, takeNow), 0);
    EXPECT_EQ(disk.lock(two, takeNow), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
    EXPECT_EQ(disk.close(one), 0);
    EXPECT_EQ(disk.lock(two, takeNow), 0);
    EXPECT_EQ(disk.close(two), 0);
    EXPECT_EQ(disk.openCount(), 0);
}

TEST(SimulatedDisk, LinksArePathsToOtherFiles) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "there");
    disk.addLink("/d/absolute", "/d/a");
    disk.addLink("/d/relative", "a");
    disk.addLink("/e", "d");
    EXPECT_EQ(disk.contents("/d/absolute"), "there");
    EXPECT_EQ(disk.contents("/d/relative"), "there");
    EXPECT_EQ(disk.contents("/e/relative"), "there");
    disk.addLink("/loop", "loop");
    EXPECT_EQ(disk.open("/loop", O_RDONLY, 0), -1);
    EXPECT_EQ(errno, ELOOP);
}

TEST(SimulatedDisk, PermissionsOfOwnersCount) {
    SimulatedDisk disk;
    disk.addFile("/d/a", "", 0400);
    disk.addFolder("/closed", 0500);
    EXPECT_EQ(disk.open("/d/a", O_WRONLY, 0), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(disk.open("/closed/a", O_WRONLY | O_CREAT, 0600), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(disk.open("/none/a", O_WRONLY | O_CREAT, 0600), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST(SimulatedDisk, AFullDiskTakesWhatFits) {
    SimulatedDisk disk;
    disk.addFile("/a", "12345");
    disk.setCapacity(8);
    const int file = disk.open("/a", O_WRONLY | O_APPEND, 0);
    EXPECT_EQ(disk.write(file, "abcdef", 6), 3);
    EXPECT_EQ(disk.write(file, "def", 3), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(disk.contents("/a"), "12345abc");
}

} // namespace
} // namespace quelm::test
