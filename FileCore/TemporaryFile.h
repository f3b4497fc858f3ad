#pragma once

#include "FileCore/FileDescriptor.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <expected>
#include <string>
#include <string_view>

namespace quelm {

/// A new file of its own name, open for writing and reading, that is removed at the end of its life unless it has been
/// moved to its final place. It is locked (flock(2)) while it is at work: one that is not was left behind by a process
/// that was killed. Movable, not copyable.
class TemporaryFile {
public:
    /// A file that nobody but its owner may open until it is given other permissions.
    static std::expected<TemporaryFile, SystemError> createPrivate(const std::string& folder,
                                                                   SystemCalls& calls = SystemCalls::real());

    /// A file with the permissions that the user's new files have.
    static std::expected<TemporaryFile, SystemError>
    createWithDefaultPermissions(const std::string& folder, SystemCalls& calls = SystemCalls::real());

    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile();

    int descriptor() const { return file_.number(); }

    /// Gives the file the name `path`, in the place of whatever bears it now, and leaves it open. `path` must lie on
    /// the same file system. After a failure it has its own name still.
    std::expected<void, SystemError> moveTo(const std::string& path);

    /// Takes its name away: the bytes are gone when it is closed, however the process ends.
    std::expected<void, SystemError> removeName();

    std::expected<void, SystemError> close() { return file_.close(); }

    /// Removes those of a folder that were left behind, as far as that works. O(names in the folder).
    static void removeLeftBehind(const std::string& folder, SystemCalls& calls = SystemCalls::real());

    /// Whether a file of that name is one of these, at work or left behind: ".quelm-", two numbers, ".tmp".
    static bool isName(std::string_view name);

private:
    TemporaryFile(std::string path, FileDescriptor file, SystemCalls& calls)
        : path_(std::move(path)), file_(std::move(file)), calls_(&calls) {}

    static std::expected<TemporaryFile, SystemError> create(const std::string& folder, unsigned mode,
                                                            SystemCalls& calls);
    bool isSafe() const;

    std::string path_; // empty once there is nothing to remove
    FileDescriptor file_;
    SystemCalls* calls_;
};

} // namespace quelm
