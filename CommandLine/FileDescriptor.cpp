#include "CommandLine/FileDescriptor.h"

#include <algorithm>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace quelm {

namespace {

// Some systems refuse a single write of 2 GB or more.
constexpr std::size_t largestWrite = std::size_t{1} << 30;

} // namespace

FileDescriptor::~FileDescriptor() {
    if (isOpen())
        ::close(number_);
}

std::expected<void, SystemError> FileDescriptor::close() {
    // After EINTR the descriptor is gone all the same on Linux: closing again might hit another file.
    if (::close(std::exchange(number_, -1)) != 0 && errno != EINTR)
        return std::unexpected(SystemError::last());
    return {};
}

std::expected<FileDescriptor, SystemError> openFile(const char* path, int flags, unsigned mode) {
    int number = -1;
    do {
        number = ::open(path, flags | O_CLOEXEC | O_NOCTTY, mode);
    } while (number < 0 && errno == EINTR);
    if (number < 0)
        return std::unexpected(SystemError::last());
    return FileDescriptor(number);
}

void waitUntilReady(int descriptor, short events) {
    pollfd waiting{descriptor, events, 0};
    ::poll(&waiting, 1, -1);
}

std::expected<void, SystemError> writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), std::min(bytes.size(), largestWrite));
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno == EAGAIN || errno == EWOULDBLOCK)
            waitUntilReady(descriptor, POLLOUT);
        else if (errno != EINTR)
            return std::unexpected(SystemError::last());
    }
    return {};
}

} // namespace quelm
