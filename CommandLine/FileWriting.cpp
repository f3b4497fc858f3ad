#include "CommandLine/FileWriting.h"

#include "CommandLine/FileDescriptor.h"
#include "CommandLine/TemporaryFile.h"

#include <array>
#include <climits>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm {

namespace {

using Status = struct stat;

/// The status of the file that a path leads to; absent when there is none.
std::expected<std::optional<Status>, SystemError> statusOf(const std::string& path) {
    Status status{};
    if (::stat(path.c_str(), &status) == 0)
        return status;
    if (errno == ENOENT)
        return std::nullopt;
    return std::unexpected(SystemError::last());
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return path.substr(0, slash == 0 ? 1 : slash);
}

/// The path behind all symbolic links in the last place of `path`, whether a file is there yet or not.
std::expected<std::string, SystemError> linkTarget(std::string path) {
    constexpr int mostLinks = 40;
    for (int link = 0; link < mostLinks; ++link) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0)
            return path; // no link: a file, or nothing yet
        const std::string_view next(target.data(), static_cast<std::size_t>(length));
        path = next.starts_with('/') ? std::string(next) : folderOf(path) + '/' + std::string(next);
    }
    return std::unexpected(SystemError{ELOOP});
}

std::expected<void, SystemError> writeThrough(const std::string& path, const WriteBytes& write) {
    auto file = openFile(path.c_str(), O_WRONLY);
    if (!file)
        return std::unexpected(file.error());
    if (auto written = write(file->number()); !written)
        return written;
    return file->close();
}

std::expected<void, SystemError> flush(int descriptor) {
    // Some file systems have nothing to flush and say so.
    if (::fsync(descriptor) != 0 && errno != EINVAL && errno != ENOTSUP && errno != ENOSYS)
        return std::unexpected(SystemError::last());
    return {};
}

/// Gives `descriptor` owner, group and permissions of another file. Permissions that would mean something
/// else for another owner or group are not carried over. What is right already is not touched: some file
/// systems refuse any change.
std::expected<void, SystemError> adoptOwnership(int descriptor, const Status& old) {
    Status now{};
    if (::fstat(descriptor, &now) != 0)
        return std::unexpected(SystemError::last());
    mode_t mode = old.st_mode & 07777;
    const bool hasOwner = now.st_uid == old.st_uid || ::fchown(descriptor, old.st_uid, static_cast<gid_t>(-1)) == 0;
    const bool hasGroup = now.st_gid == old.st_gid || ::fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0;
    if (!hasOwner)
        mode &= 0777;
    if (!hasGroup)
        mode &= 0707;
    if (mode != (now.st_mode & 07777) && ::fchmod(descriptor, mode) != 0)
        return std::unexpected(SystemError::last());
    return {};
}

std::expected<void, SystemError> replaceFile(const std::string& path, const std::optional<Status>& old,
                                             const WriteBytes& write) {
    if (old && ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        return std::unexpected(SystemError::last());

    const std::string folder = folderOf(path);
    auto file = old ? TemporaryFile::createPrivate(folder) : TemporaryFile::createWithDefaultPermissions(folder);
    if (!file)
        return std::unexpected(file.error());
    if (auto written = write(file->descriptor()); !written)
        return written;
    if (old) {
        if (auto adopted = adoptOwnership(file->descriptor(), *old); !adopted)
            return adopted;
    }
    if (auto flushed = flush(file->descriptor()); !flushed)
        return flushed;
    if (auto moved = file->moveTo(path); !moved)
        return moved;
    // The new name survives a power failure only once the folder is flushed too. Before that the old file is
    // there, so a folder that cannot be opened or flushed is no failure.
    if (const auto opened = openFile(folder.c_str(), O_RDONLY | O_DIRECTORY))
        (void)flush(opened->number());
    return {};
}

bool isSameFile(const Status& left, const Status& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

} // namespace

std::expected<void, SystemError> writeFile(const std::string& path, std::string_view bytes) {
    return writeFile(path, [bytes](int descriptor) { return writeAll(descriptor, bytes); });
}

std::expected<void, SystemError> writeFile(const std::string& path, const WriteBytes& write) {
    if (path.empty())
        return std::unexpected(SystemError{ENOENT}); // it would lead to the working folder
    const auto old = statusOf(path);
    if (!old)
        return std::unexpected(old.error());
    if (*old && !S_ISREG((*old)->st_mode))
        return writeThrough(path, write);

    const auto target = linkTarget(path);
    if (!target)
        return std::unexpected(target.error());
    if (*old) {
        // A link such as /dev/stdout may lead to a file that has no name any more.
        const auto named = statusOf(*target);
        if (!named || !*named || !isSameFile(**named, **old))
            return writeThrough(path, write);
    }
    return replaceFile(*target, *old, write);
}

} // namespace quelm
