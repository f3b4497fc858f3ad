#include "CommandLine/FileReading.h"
#include "Tests/CommandLine/TemporaryFolder.h"

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quelm {
namespace {

constexpr std::size_t noLimit = std::size_t{1} << 32;

/// A text in which no two places look alike, so that a piece read twice or left out shows.
std::string numbers(std::size_t size) {
    std::string text;
    for (std::size_t number = 0; text.size() < size; ++number)
        text += std::to_string(number) + ' ';
    text.resize(size);
    return text;
}

std::string readAll(const std::string& path, std::size_t limit = noLimit) {
    const auto bytes = readFile(path, limit);
    return bytes ? std::string(bytes->view()) : "error: " + bytes.error().description();
}

TEST(FileReading, GivesTheBytesOfFilesOfAnySize) {
    const TemporaryFolder folder;
    for (const std::size_t size : {0, 1, 63, 64, 65, 4096, 65536, 3'000'000})
        EXPECT_TRUE(readAll(folder.write("a", numbers(size))) == numbers(size)) << size;
}

TEST(FileReading, TheBytesArePadded) {
    const TemporaryFolder folder;
    EXPECT_TRUE(readFile(folder.write("a", "[1]"), noLimit)->isPadded());
    EXPECT_TRUE(readFile(folder.write("b", ""), noLimit)->isPadded());
}

TEST(FileReading, StopsAtTheLimit) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", numbers(100'000));
    EXPECT_EQ(readAll(path, 0), "");
    EXPECT_EQ(readAll(path, 10), numbers(10));
    EXPECT_TRUE(readAll(path, 99'999) == numbers(99'999));
    EXPECT_TRUE(readAll(path, 100'000) == numbers(100'000));
    EXPECT_EQ(readFile("/dev/zero", 1'000'000)->size(), 1'000'000u);
}

TEST(FileReading, APipeIsReadToItsEnd) {
    const TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const std::string text = numbers(1'000'000);
    std::thread writing([&] {
        const int descriptor = ::open(path.c_str(), O_WRONLY);
        for (std::size_t at = 0; at < text.size(); at += 1000)
            EXPECT_EQ(::write(descriptor, text.data() + at, 1000), 1000);
        ::close(descriptor);
    });
    const std::string bytes = readAll(path);
    writing.join();
    EXPECT_TRUE(bytes == text);
}

TEST(FileReading, AFileLongerThanItSaidIsReadToItsEnd) {
    const std::string path = "/proc/self/status";
    struct stat status{};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    ASSERT_EQ(status.st_size, 0);
    EXPECT_TRUE(readAll(path).starts_with("Name:"));
}

TEST(FileReading, AFileShorterThanItSaidIsReadToItsEnd) {
    const TemporaryFolder folder;
    // From the middle on, less is left than the file's size says.
    const int descriptor = ::open(folder.write("a", numbers(100)).c_str(), O_RDONLY);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(::lseek(descriptor, 60, SEEK_SET), 60);
    EXPECT_EQ(readDescriptor(descriptor, noLimit)->view(), numbers(100).substr(60));
    ::close(descriptor);
}

TEST(FileReading, WaitsForADescriptorThatHasNothingYet) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_NONBLOCK), 0);
    std::thread writing([&] {
        ::usleep(50'000);
        EXPECT_EQ(::write(ends[1], "[1,", 3), 3);
        ::usleep(50'000);
        EXPECT_EQ(::write(ends[1], "2]", 2), 2);
        ::close(ends[1]);
    });
    const auto bytes = readDescriptor(ends[0], noLimit);
    writing.join();
    ::close(ends[0]);
    EXPECT_EQ(bytes->view(), "[1,2]");
}

TEST(FileReading, TellsWhyAFileCannotBeRead) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a", "1");
    EXPECT_EQ(readAll(folder.path("b")), "error: no existe");
    EXPECT_EQ(readAll(file + "/b"), "error: una parte de la ruta no es una carpeta");
    EXPECT_EQ(readAll(folder.path()), "error: es una carpeta");
    EXPECT_EQ(readAll(""), "error: no existe");
    EXPECT_EQ(readAll(folder.path(std::string(300, 'a'))), "error: el nombre es demasiado largo");
    EXPECT_EQ(readDescriptor(-1, noLimit).error(), SystemError{EBADF});
}

} // namespace
} // namespace quelm
