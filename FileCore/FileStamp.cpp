#include "FileCore/FileStamp.h"

namespace quelm {

std::expected<FileStamp, SystemError> FileStamp::of(const std::string& path, SystemCalls& calls) {
    struct stat status = {};
    if (calls.status(path.c_str(), status) != 0)
        return std::unexpected(SystemError::last());
    return from(status);
}

FileStamp FileStamp::from(const struct stat& status) {
    FileStamp stamp;
    stamp.device = static_cast<std::uint64_t>(status.st_dev);
    stamp.inode = static_cast<std::uint64_t>(status.st_ino);
    stamp.size = static_cast<std::int64_t>(status.st_size);
    stamp.modified = std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
    stamp.linkCount = static_cast<std::uint64_t>(status.st_nlink);
    return stamp;
}

} // namespace quelm
