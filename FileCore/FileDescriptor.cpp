#include "FileCore/FileDescriptor.h"

#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <fcntl.h>
#include <poll.h>

namespace quelm {

namespace {

// Some systems refuse a single write of 2 GB or more.
constexpr std::size_t largestWrite = std::size_t{1} << 30;

std::expected<void, SystemError> afterSynchronizing(int result) {
    if (result == 0 || errno == EINVAL || errno == ENOTSUP || errno == ENOSYS)
        return {};
    return std::unexpected(SystemError::last());
}

} // namespace

FileDescriptor::~FileDescriptor() {
    if (isOpen())
        calls_->close(number_);
}

std::expected<void, SystemError> FileDescriptor::close() {
    // After EINTR the descriptor is gone all the same on Linux: closing again might hit another file.
    if (calls_->close(std::exchange(number_, -1)) != 0 && errno != EINTR)
        return std::unexpected(SystemError::last());
    return {};
}

std::expected<FileDescriptor, SystemError> openFile(const char* path, int flags, unsigned mode, SystemCalls& calls) {
    const int number = uninterrupted([&] { return calls.open(path, flags | O_CLOEXEC | O_NOCTTY, mode); });
    if (number < 0)
        return std::unexpected(SystemError::last());
    return FileDescriptor(number, calls);
}

void waitUntilReady(int descriptor, short events) {
    pollfd waiting{descriptor, events, 0};
    ::poll(&waiting, 1, -1);
}

std::expected<void, SystemError> writeAll(int descriptor, std::string_view bytes, SystemCalls& calls) {
    while (!bytes.empty()) {
        const ssize_t written = calls.write(descriptor, bytes.data(), std::min(bytes.size(), largestWrite));
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0)
            return std::unexpected(SystemError{EIO}); // asking again for ever would lead nowhere
        else if (errno == EAGAIN || errno == EWOULDBLOCK)
            waitUntilReady(descriptor, POLLOUT);
        else if (errno != EINTR)
            return std::unexpected(SystemError::last());
    }
    return {};
}

std::expected<std::size_t, SystemError> readSome(int descriptor, std::span<char> room, SystemCalls& calls) {
    const ssize_t count = uninterrupted([&] { return calls.read(descriptor, room.data(), room.size()); });
    if (count < 0)
        return std::unexpected(SystemError::last());
    return static_cast<std::size_t>(count);
}

std::expected<void, SystemError> synchronize(int descriptor, SystemCalls& calls) {
    return afterSynchronizing(uninterrupted([&] { return calls.synchronize(descriptor); }));
}

std::expected<void, SystemError> synchronizeData(int descriptor, SystemCalls& calls) {
    return afterSynchronizing(uninterrupted([&] { return calls.synchronizeData(descriptor); }));
}

std::expected<void, SystemError> synchronizeFolder(const char* path, SystemCalls& calls) {
    const auto folder = openFile(path, O_RDONLY | O_DIRECTORY, 0, calls);
    if (!folder)
        return std::unexpected(folder.error());
    return synchronize(folder->number(), calls);
}

} // namespace quelm
