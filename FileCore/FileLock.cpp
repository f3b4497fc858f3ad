#include "FileCore/FileLock.h"

#include "FileCore/SaveTarget.h"
#include "FileCore/Uninterrupted.h"

#include <fcntl.h>
#include <sys/file.h>

namespace quelm {

namespace {

std::string asideName(const std::string& path, int attempt) {
    return path + ".apartado" + (attempt == 1 ? "" : "-" + std::to_string(attempt));
}

std::expected<FileDescriptor, SystemError> openForLock(const std::string& path, SystemCalls& calls) {
    // Not through a link, and not waiting for the other end of a pipe.
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK;
    auto file = openFile(path.c_str(), O_RDWR | flags, 0, calls);
    const bool isRefused = !file && (file.error().code == EACCES || file.error().code == EROFS);
    return isRefused ? openFile(path.c_str(), O_RDONLY | flags, 0, calls) : std::move(file);
}

} // namespace

std::expected<std::optional<FileDescriptor>, SystemError> openLocked(const std::string& path, SystemCalls& calls) {
    auto file = openForLock(path, calls);
    if (!file) {
        if (file.error().code == ENOENT)
            return std::nullopt;
        return std::unexpected(file.error());
    }
    const auto locked = tryLock(*file, calls);
    if (!locked)
        return std::unexpected(locked.error());
    if (!*locked)
        return std::nullopt;
    // The name may have gone to another file between the opening and the lock.
    const auto isThere = isFileAt(path, *file, calls);
    if (!isThere)
        return std::unexpected(isThere.error());
    if (!*isThere)
        return std::nullopt;
    return *std::move(file);
}

std::expected<bool, SystemError> tryLock(const FileDescriptor& file, SystemCalls& calls) {
    if (uninterrupted([&] { return calls.lock(file.number(), LOCK_EX | LOCK_NB); }) == 0)
        return true;
    if (errno == EWOULDBLOCK)
        return false;
    return std::unexpected(SystemError::last());
}

std::expected<bool, SystemError> isFileAt(const std::string& path, const FileDescriptor& file, SystemCalls& calls) {
    struct stat own = {};
    struct stat named = {};
    if (uninterrupted([&] { return calls.fileStatus(file.number(), own); }) != 0)
        return std::unexpected(SystemError::last());
    if (uninterrupted([&] { return calls.linkStatus(path.c_str(), named); }) != 0) {
        if (errno == ENOENT)
            return false;
        return std::unexpected(SystemError::last());
    }
    return own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

std::expected<void, SystemError> removeLocked(const std::string& path, const FileDescriptor& file, SystemCalls& calls) {
    const auto isThere = isFileAt(path, file, calls);
    if (!isThere)
        return std::unexpected(isThere.error());
    if (*isThere && uninterrupted([&] { return calls.unlink(path.c_str()); }) != 0 && errno != ENOENT)
        return std::unexpected(SystemError::last());
    return synchronizeFolder(folderOf(path).c_str(), calls);
}

std::expected<std::string, SystemError> keepLockedAside(const std::string& path, const FileDescriptor& file,
                                                        SystemCalls& calls) {
    struct stat status = {};
    int attempt = 1;
    while (uninterrupted([&] { return calls.linkStatus(asideName(path, attempt).c_str(), status); }) == 0)
        ++attempt;
    if (errno != ENOENT)
        return std::unexpected(SystemError::last());
    std::string aside = asideName(path, attempt);
    const auto isThere = isFileAt(path, file, calls);
    if (!isThere)
        return std::unexpected(isThere.error());
    if (!*isThere)
        return std::unexpected(SystemError{ENOENT});
    if (uninterrupted([&] { return calls.rename(path.c_str(), aside.c_str()); }) != 0)
        return std::unexpected(SystemError::last());
    if (auto done = synchronizeFolder(folderOf(aside).c_str(), calls); !done)
        return std::unexpected(done.error());
    return aside;
}

} // namespace quelm
