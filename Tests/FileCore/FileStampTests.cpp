#include "FileCore/FileStamp.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm::test {
namespace {

FileStamp stampOf(const std::string& path) {
    const auto stamp = FileStamp::of(path);
    EXPECT_TRUE(stamp);
    return stamp.value_or(FileStamp());
}

void setTime(const std::string& path, time_t seconds, long nanoseconds) {
    const timespec times[]{{0, UTIME_OMIT}, {seconds, nanoseconds}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST(FileStamp, AFileThatNobodyTouchesKeepsItsStamp) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "{}");
    EXPECT_EQ(stampOf(path), stampOf(path));
    EXPECT_EQ(stampOf(path).size, 2);
}

TEST(FileStamp, AnotherSizeOrTimeIsAnotherState) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "{}");
    setTime(path, 1000, 1);
    const FileStamp before = stampOf(path);
    EXPECT_EQ(before.modified, 1'000'000'000'001);

    setTime(path, 1000, 2);
    EXPECT_NE(stampOf(path), before);
    EXPECT_TRUE(stampOf(path).isSameFile(before));

    folder.write("a.json", "{ }");
    setTime(path, 1000, 1);
    EXPECT_NE(stampOf(path), before);
}

TEST(FileStamp, AnotherFileOfThatNameIsAnotherState) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "{}");
    setTime(path, 1000, 0);
    const FileStamp before = stampOf(path);
    const std::string other = folder.write("b.json", "[]");
    setTime(other, 1000, 0);
    ASSERT_EQ(::rename(other.c_str(), path.c_str()), 0);
    EXPECT_FALSE(stampOf(path).isSameFile(before));
    EXPECT_NE(stampOf(path), before);
}

TEST(FileStamp, MoreNamesDoNotChangeTheState) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "{}");
    const FileStamp before = stampOf(path);
    ASSERT_EQ(::link(path.c_str(), folder.path("b.json").c_str()), 0);
    EXPECT_EQ(stampOf(path), before);
    EXPECT_EQ(stampOf(path).linkCount, 2U);
}

TEST(FileStamp, ALinkHasTheStampOfItsFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.json", "{}");
    ASSERT_EQ(::symlink(path.c_str(), folder.path("link.json").c_str()), 0);
    EXPECT_EQ(stampOf(folder.path("link.json")), stampOf(path));
}

TEST(FileStamp, WhyThereIsNoneIsTold) {
    const TemporaryFolder folder;
    EXPECT_EQ(FileStamp::of(folder.path("none")).error(), SystemError{ENOENT});
    FaultySystemCalls calls(Fault::failing(EIO).at("status", 0));
    EXPECT_EQ(FileStamp::of(folder.path(), calls).error(), SystemError{EIO});
}

} // namespace
} // namespace quelm::test
