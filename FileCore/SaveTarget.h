#pragma once

#include "FileCore/FileSaving.h"
#include "FileCore/SystemCalls.h"

#include <expected>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace quelm {

/// Where the bytes go that are saved under a path.
struct SaveTarget {
    /// Behind all symbolic links in the last place of the path that was asked for.
    std::string path;
    /// That of the file that is there now; absent when there is none.
    std::optional<struct stat> old;

    std::string folder() const;

    /// Whether there is what was found; an error says what somebody else has put there meanwhile. One that is gone is
    /// nobody's loss.
    std::expected<void, SaveFailure> checkUnchanged(SaveFailure::Step step, SystemCalls& calls) const;
};

/// What `saveFile` will write: a regular file that this user may write to, or none yet, in a folder that is there. A
/// path that leads to a file without a name (through /proc) leads to no file.
std::expected<SaveTarget, SaveFailure> findSaveTarget(const std::string& path, SystemCalls& calls);

/// The folder of a path: what stands before its last slash, or the working folder.
std::string folderOf(const std::string& path);

} // namespace quelm
