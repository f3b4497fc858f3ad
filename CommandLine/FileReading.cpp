#include "CommandLine/FileReading.h"

#include "FileCore/FileDescriptor.h"

#include <algorithm>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm {

namespace {

// What is asked for at a time when the size is not known beforehand, and the most that a system takes in one
// call.
constexpr std::size_t smallestRead = std::size_t{64} << 10;
constexpr std::size_t largestRead = std::size_t{1} << 30;

/// Room for the whole file and one byte more: a read that fills less than its room without reaching the end
/// needs no growing to find the end. The size is a hint only.
std::size_t expectedSize(int descriptor, std::size_t limit) {
    struct stat status{};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0)
        return smallestRead;
    return std::min(static_cast<std::size_t>(status.st_size), limit) + 1;
}

} // namespace

std::expected<SharedText, SystemError> readDescriptor(int descriptor, std::size_t limit) {
    TextBuilder bytes(expectedSize(descriptor, limit));
    while (bytes.size() < limit) {
        if (bytes.available() == 0)
            bytes.room(smallestRead); // at least doubles what there is
        const std::size_t wanted = std::min({bytes.available(), limit - bytes.size(), largestRead});
        const ssize_t count = ::read(descriptor, bytes.room(wanted), wanted);
        if (count > 0)
            bytes.advance(static_cast<std::size_t>(count));
        else if (count == 0)
            break;
        else if (errno == EAGAIN || errno == EWOULDBLOCK)
            waitUntilReady(descriptor, POLLIN);
        else if (errno != EINTR)
            return std::unexpected(SystemError::last());
    }
    return bytes.finish();
}

std::expected<SharedText, SystemError> readFile(const std::string& path, std::size_t limit) {
    const auto file = openFile(path.c_str(), O_RDONLY);
    if (!file)
        return std::unexpected(file.error());
    return readDescriptor(file->number(), limit);
}

} // namespace quelm
