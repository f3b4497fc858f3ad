#include "FileCore/FileLock.h"

#include "FileCore/SaveTarget.h"
#include "FileCore/Uninterrupted.h"

#include <sys/file.h>

namespace quelm {

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

} // namespace quelm
