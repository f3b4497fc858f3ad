#pragma once

#include "CommandLine/FileDescriptor.h"
#include "CommandLine/SystemError.h"

#include <expected>
#include <string>

namespace quelm {

/// A new file of its own name, open for writing, that is removed at the end of its life unless it has been
/// moved to its final place. Movable, not copyable.
class TemporaryFile {
public:
    /// A file that nobody but its owner may open until it is given other permissions.
    static std::expected<TemporaryFile, SystemError> createPrivate(const std::string& folder);

    /// A file with the permissions that the user's new files have.
    static std::expected<TemporaryFile, SystemError> createWithDefaultPermissions(const std::string& folder);

    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile();

    int descriptor() const { return file_.number(); }

    /// Closes the file and gives it the name `path`, in the place of whatever bears it now. `path` must lie
    /// on the same file system.
    std::expected<void, SystemError> moveTo(const std::string& path);

private:
    TemporaryFile(std::string path, FileDescriptor file) : path_(std::move(path)), file_(std::move(file)) {}

    static std::expected<TemporaryFile, SystemError> create(const std::string& folder, unsigned mode);

    std::string path_; // empty once there is nothing to remove
    FileDescriptor file_;
};

} // namespace quelm
