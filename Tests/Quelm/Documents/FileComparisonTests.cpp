#include "Quelm/Documents/FileComparison.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm {
namespace {

using Result = FileComparison::Result;

class FileComparisonTests : public testing::Test {
protected:
    std::string bytes() const { return TemporaryFolder::contents(path); }
    FileStamp stamp() const { return FileStamp::of(path.toStdString()).value(); }
    /// As it is when the file is read now.
    FileState state() const { return {stamp(), ContentChecksum::of(bytes())}; }
    void setModified(std::int64_t nanoseconds) const {
        const timespec time{.tv_sec = nanoseconds / 1'000'000'000, .tv_nsec = nanoseconds % 1'000'000'000};
        const timespec times[]{time, time};
        ASSERT_EQ(utimensat(AT_FDCWD, path.toLocal8Bit(), times, 0), 0);
    }
    void append(std::string_view more) const { std::ofstream(path.toStdString(), std::ios::app) << more; }
    void replace(std::string_view fresh) const {
        const QString other = folder.write(QStringLiteral("nuevo"), fresh);
        ASSERT_EQ(std::rename(other.toLocal8Bit(), path.toLocal8Bit()), 0);
    }
    Result compare(const FileState& known) const { return compareFile(path, known).result; }

    TemporaryFolder folder;
    QString path = folder.write(QStringLiteral("datos.json"), "[1,2]");
    static constexpr std::int64_t longAgo = 1'500'000'000'000'000'000;
};

TEST_F(FileComparisonTests, AFileThatNobodyTouchedIsTheSame) {
    const FileComparison found = compareFile(path, state());
    EXPECT_EQ(found.result, Result::same);
    EXPECT_EQ(found.stamp, stamp());
}

TEST_F(FileComparisonTests, AFileThatGrewOrWasReplacedHasChanged) {
    const FileState known = state();
    append(" ");
    EXPECT_EQ(compare(known), Result::changed);
    replace("[3,4]");
    const FileComparison found = compareFile(path, known);
    EXPECT_EQ(found.result, Result::changed);
    EXPECT_EQ(found.stamp, stamp());
}

TEST_F(FileComparisonTests, AStateThatIsKnownToDifferIsNotReadAgain) {
    const FileState known = state();
    replace("[3,4]");
    setModified(longAgo);
    const FileState different = state();
    ASSERT_TRUE(different.isCertain());
    // Bytes that nobody reads do not matter.
    std::ofstream(path.toStdString()) << "[1,2]";
    setModified(longAgo);
    ASSERT_EQ(stamp(), different.stamp);
    EXPECT_EQ(compareFile(path, known).result, Result::touched);
    const FileComparison found = compareFile(path, known, std::optional(different));
    EXPECT_EQ(found, (FileComparison{Result::changed, different.stamp}));
    setModified(longAgo + 1);
    EXPECT_EQ(compareFile(path, known, std::optional(different)).result, Result::touched) << "it is another state";
}

TEST_F(FileComparisonTests, TheSameBytesUnderAnotherStampAreTouchedOnly) {
    const FileState known = state();
    replace("[1,2]");
    ASSERT_NE(stamp(), known.stamp);
    EXPECT_EQ(compareFile(path, known), (FileComparison{Result::touched, stamp()}));
    setModified(longAgo);
    EXPECT_EQ(compareFile(path, known), (FileComparison{Result::touched, stamp()}));
}

TEST_F(FileComparisonTests, OtherBytesUnderTheStampOfAFreshFileAreFound) {
    const FileState known = state();
    std::fstream(path.toStdString()) << "[7";
    setModified(known.stamp.modified);
    ASSERT_EQ(stamp(), known.stamp);
    EXPECT_EQ(compare(known), Result::changed);
}

TEST_F(FileComparisonTests, TheStampOfAnOldFileIsBelievedWithoutReadingIt) {
    setModified(longAgo);
    FileState known = state();
    known.checksum.low += 1;
    EXPECT_TRUE(known.isCertain());
    EXPECT_EQ(compare(known), Result::same);
}

TEST_F(FileComparisonTests, AStateIsCertainWhenItWasSeenLongEnoughAfterTheLastChange) {
    FileState known = state();
    EXPECT_FALSE(known.isCertain());
    known.since += std::chrono::seconds(3);
    EXPECT_TRUE(known.isCertain());
    EXPECT_EQ(known, state()) << "when it was seen is no part of what was seen";
}

TEST_F(FileComparisonTests, AFileThatIsNotThereIsGone) {
    const FileState known = state();
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(compareFile(path, known), (FileComparison{Result::gone, std::nullopt}));
    EXPECT_EQ(compareFile(folder.path(QStringLiteral("no/hay/nada.json")), known).result, Result::gone);
    folder.write(QStringLiteral("archivo"), "");
    EXPECT_EQ(compareFile(folder.path(QStringLiteral("archivo/datos.json")), known).result, Result::gone);
    ASSERT_TRUE(QFile::link(folder.path(QStringLiteral("nada")), path));
    EXPECT_EQ(compare(known), Result::gone) << "a link that leads nowhere";
}

TEST_F(FileComparisonTests, WhatCannotBeLookedIntoIsUnreadable) {
    const FileState known = state();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::link(path, path));
    EXPECT_EQ(compare(known), Result::unreadable) << "a link to itself";
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_EQ(mkfifo(path.toLocal8Bit(), 0600), 0);
    FileState empty = known;
    empty.checksum.size = 0;
    EXPECT_EQ(compare(empty), Result::unreadable) << "a pipe is not waited for";
}

TEST_F(FileComparisonTests, AFolderInItsPlaceIsNotTheSame) {
    FileState known = state();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    const Result other = compare(known);
    EXPECT_TRUE(other == Result::changed || other == Result::unreadable);
    known.checksum.size = stamp().size;
    EXPECT_EQ(compare(known), Result::unreadable);
}

TEST_F(FileComparisonTests, CanBeStopped) {
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(compareFile(path, state(), source.get_token()).result, Result::cancelled);
}

} // namespace
} // namespace quelm
