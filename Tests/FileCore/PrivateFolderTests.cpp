#include "FileCore/PrivateFolder.h"

#include "Tests/CommandLine/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quelm {
namespace {

unsigned modeOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

TEST(PrivateFolderTests, IsCreatedWithThoseAboveItForNobodyElse) {
    const TemporaryFolder folder;
    ASSERT_TRUE(createPrivateFolder(folder.path("a/b/c")));
    for (const char* name : {"a", "a/b", "a/b/c"})
        EXPECT_EQ(modeOf(folder.path(name)), 0700U) << name;
    EXPECT_TRUE(createPrivateFolder(folder.path("a/b/c")));
}

TEST(PrivateFolderTests, OneThatIsOpenToOthersIsClosedAndThoseAboveItAreNot) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkdir(folder.path("a").c_str(), 0755), 0);
    ASSERT_EQ(::chmod(folder.path("a").c_str(), 0755), 0);
    ASSERT_EQ(::mkdir(folder.path("a/b").c_str(), 0755), 0);
    ASSERT_TRUE(createPrivateFolder(folder.path("a/b")));
    EXPECT_EQ(modeOf(folder.path("a/b")), 0700U);
    EXPECT_EQ(modeOf(folder.path("a")), 0755U);
}

TEST(PrivateFolderTests, WhereAFileIsThereIsNone) {
    const TemporaryFolder folder;
    folder.write("a", "");
    EXPECT_FALSE(createPrivateFolder(folder.path("a")));
    EXPECT_EQ(createPrivateFolder(folder.path("a/b")).error(), SystemError{ENOTDIR});
}

} // namespace
} // namespace quelm
