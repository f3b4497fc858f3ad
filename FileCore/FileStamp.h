#pragma once

#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <cstdint>
#include <expected>
#include <string>

namespace quelm {

/// What tells one state of a file from another without reading it. Equal stamps mean the same bytes, as long as nobody
/// sets times back on purpose and no two writes of one size fall into the same tick of the file system's clock.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// In bytes.
    std::int64_t size = 0;
    /// Of the last change of the contents, in nanoseconds since 1970.
    std::int64_t modified = 0;
    std::uint64_t linkCount = 0;

    /// That of the file that the path leads to.
    static std::expected<FileStamp, SystemError> of(const std::string& path, SystemCalls& calls = SystemCalls::real());
    static FileStamp from(const struct stat& status);

    /// Whether both are the same file, in whatever state.
    bool isSameFile(const FileStamp& other) const { return device == other.device && inode == other.inode; }

    /// The number of links does not count: it changes without the file.
    friend bool operator==(const FileStamp& left, const FileStamp& right) {
        return left.isSameFile(right) && left.size == right.size && left.modified == right.modified;
    }
};

} // namespace quelm
