#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/FileStamp.h"

#include <chrono>

namespace quelm {

/// What a file held when it was last read or written here.
struct FileState {
    FileStamp stamp;
    ContentChecksum checksum;
    /// When that was known to be so, at the latest.
    std::chrono::system_clock::time_point since = std::chrono::system_clock::now();

    /// Whether a file that still has the stamp still holds the same. Not so when it had been changed right before:
    /// another change may have left the same times, of which some file systems know nothing below two seconds.
    bool isCertain() const {
        const auto modified = std::chrono::nanoseconds(stamp.modified);
        const auto age = std::chrono::duration_cast<std::chrono::nanoseconds>(since.time_since_epoch()) - modified;
        return std::chrono::abs(age) > std::chrono::milliseconds(2500);
    }

    /// Of a file that holds something else than what the document was made from, whatever that is: no file is ever found
    /// in that state.
    static FileState unknown() { return {.stamp = {}, .checksum = {.size = -1}}; }
    bool isKnown() const { return checksum.size >= 0; }

    friend bool operator==(const FileState& left, const FileState& right) {
        return left.stamp == right.stamp && left.checksum == right.checksum;
    }
};

} // namespace quelm
