#include "FileCore/FileLoading.h"
#include "Tests/CommandLine/TemporaryFolder.h"
#include "Tests/FileCore/FaultySystemCalls.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace quelm::test {
namespace {

using Reason = LoadFailure::Reason;

Reason reasonOf(const std::string& path) {
    const auto loaded = loadFile(path);
    EXPECT_FALSE(loaded) << path;
    return loaded ? Reason::system : loaded.error().reason;
}

/// Calls with something that happens after each read of bytes.
class ReadingWatched final : public FaultySystemCalls {
public:
    explicit ReadingWatched(std::function<void()> afterRead) : afterRead_(std::move(afterRead)) {}
    ssize_t read(int file, void* bytes, std::size_t count) override {
        const ssize_t result = FaultySystemCalls::read(file, bytes, count);
        if (result > 0)
            afterRead_();
        return result;
    }

private:
    std::function<void()> afterRead_;
};

TEST(FileLoading, GivesTheBytesPaddedWithTheirStampAndChecksum) {
    const TemporaryFolder folder;
    const std::string bytes("uno\0dos\r\n\xff", 10);
    const std::string path = folder.write("a", bytes);
    const auto loaded = loadFile(path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->bytes.view(), bytes);
    EXPECT_TRUE(loaded->bytes.isPadded());
    EXPECT_EQ(loaded->stamp, FileStamp::of(path));
    EXPECT_EQ(loaded->checksum, ContentChecksum::of(bytes));
    EXPECT_EQ(checksumOfFile(path), ContentChecksum::of(bytes));
}

TEST(FileLoading, AnEmptyFileIsNoBytes) {
    const TemporaryFolder folder;
    const auto loaded = loadFile(folder.write("a", ""));
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(loaded->bytes.empty());
    EXPECT_EQ(loaded->checksum, ContentChecksum::of(""));
}

TEST(FileLoading, AFileLongerThanOneReadIsReadWholeAndTellsOfItsProgress) {
    const TemporaryFolder folder;
    std::string bytes(9'000'003, 'x');
    bytes.back() = 'y';
    WorkProgress progress;
    progress.setTotal(2 * static_cast<std::int64_t>(bytes.size()));
    const auto loaded = loadFile(folder.write("a", bytes), {}, &progress);
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(loaded->bytes.view() == bytes);
    EXPECT_EQ(progress.fraction(), 0.5);
}

TEST(FileLoading, AFileThatStatesNoSizeIsReadToItsEnd) {
    const auto loaded = loadFile("/proc/self/status");
    ASSERT_TRUE(loaded);
    EXPECT_NE(loaded->bytes.view().find("Pid:"), std::string_view::npos);
}

TEST(FileLoading, WhatIsNotThereIsAnErrorOfTheSystem) {
    const TemporaryFolder folder;
    EXPECT_EQ(loadFile(folder.path("none")).error(), (LoadFailure{Reason::system, SystemError{ENOENT}}));
    EXPECT_EQ(loadFile(folder.write("a", "") + "/b").error(), (LoadFailure{Reason::system, SystemError{ENOTDIR}}));
    EXPECT_EQ(loadFile("").error(), (LoadFailure{Reason::system, SystemError{ENOENT}}));
}

TEST(FileLoading, FoldersDevicesPipesAndSocketsAreRefusedWithoutWaiting) {
    const TemporaryFolder folder;
    EXPECT_EQ(reasonOf(folder.path()), Reason::folder);
    EXPECT_EQ(reasonOf("/dev/zero"), Reason::notAFile);
    EXPECT_EQ(reasonOf("/dev/null"), Reason::notAFile);
    EXPECT_EQ(reasonOf("/dev/tty"), Reason::notAFile);
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(reasonOf(folder.path("pipe")), Reason::notAFile);

    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    folder.path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(reasonOf(folder.path("socket")), Reason::notAFile);
    ::close(socket);
}

TEST(FileLoading, AFileThatIsTooLargeIsRefusedUnread) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 40);
    FaultySystemCalls calls;
    const auto loaded = loadFile(path, {}, nullptr, calls);
    ASSERT_FALSE(loaded);
    EXPECT_EQ(loaded.error().reason, Reason::tooLarge);
    for (const auto& call : calls.made())
        EXPECT_NE(call.kind, "read");
}

TEST(FileLoading, AFileIsLoadedOnlyIfItsTreeHasRoomBesideIt) {
    constexpr std::int64_t gigabyte = std::int64_t{1} << 30;
    EXPECT_EQ(largestLoadableSize(0), 0);
    EXPECT_EQ(largestLoadableSize(6 * gigabyte), 2 * gigabyte);
    EXPECT_EQ(largestLoadableSize(100 * gigabyte), longestText);
    // What is taken meanwhile is not there for the next one.
    EXPECT_LE(largestLoadableSize(), longestText);
}

TEST(FileLoading, AStoppedReadingIsCancelled) {
    const TemporaryFolder folder;
    std::stop_source source;
    source.request_stop();
    const std::string path = folder.write("a", "[1,2,3]");
    EXPECT_EQ(loadFile(path, source.get_token()).error().reason, Reason::cancelled);
    EXPECT_EQ(checksumOfFile(path, source.get_token()).error().reason, Reason::cancelled);
}

TEST(FileLoading, AReadingStopsInTheMiddle) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", std::string(20'000'000, ' '));
    std::stop_source source;
    int reads = 0;
    ReadingWatched calls([&] {
        if (++reads == 2)
            source.request_stop();
    });
    EXPECT_EQ(loadFile(path, source.get_token(), nullptr, calls).error().reason, Reason::cancelled);
    EXPECT_EQ(reads, 2);
}

TEST(FileLoading, AFileThatChangesOnceMeanwhileIsReadAnew) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "before");
    int reads = 0;
    ReadingWatched calls([&] {
        if (++reads == 1)
            folder.write("a", "after that");
    });
    const auto loaded = loadFile(path, {}, nullptr, calls);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->bytes.view(), "after that");
    EXPECT_EQ(loaded->stamp, FileStamp::of(path));
    EXPECT_EQ(loaded->checksum, ContentChecksum::of("after that"));
}

TEST(FileLoading, AFileThatGrowsAllTheTimeIsReadWithAnOldStamp) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "line\n");
    int reads = 0;
    ReadingWatched calls([&] {
        if (++reads < 1000)
            std::ofstream(path, std::ios::app) << "line\n";
    });
    // What each reading appends it reads as well: an end is found when no more is appended.
    const auto loaded = loadFile(path, {}, nullptr, calls);
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(loaded->bytes.view().starts_with("line\nline\n"));
    EXPECT_EQ(loaded->checksum, ContentChecksum::of(loaded->bytes.view()));
}

TEST(FileLoading, AnyFailingCallIsAnErrorAndAnInterruptedOneIsRepeated) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", std::string(100'000, 'x'));
    FaultySystemCalls counted;
    ASSERT_TRUE(loadFile(path, {}, nullptr, counted));
    int failures = 0;
    for (int number = 0; number < counted.count(); ++number) {
        FaultySystemCalls failing(Fault::failing(EIO).at(number));
        const auto failed = loadFile(path, {}, nullptr, failing);
        if (!failed) {
            EXPECT_EQ(failed.error(), (LoadFailure{Reason::system, SystemError{EIO}})) << failing.log();
        }
        failures += failed ? 0 : 1;
        for (const Fault& fault : {Fault::interrupting(), Fault::shortening()}) {
            FaultySystemCalls calls(fault.at(number));
            const auto loaded = loadFile(path, {}, nullptr, calls);
            ASSERT_TRUE(loaded) << calls.log();
            EXPECT_EQ(loaded->bytes.size(), 100'000u);
        }
    }
    // Only that the file is closed well does not matter.
    EXPECT_EQ(failures, counted.count() - 1);
}

} // namespace
} // namespace quelm::test
