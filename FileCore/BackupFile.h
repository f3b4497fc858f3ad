#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace quelm {

/// A backup that is being made and held ready while a file is written in place; see `FileBackup` for those that are
/// found later. It is locked as long as this lives. Movable, not copyable.
class BackupFile {
public:
    /// Copies what the open file `original` holds, which is at the absolute `path`, to a new file (0600) in the folder,
    /// which is created if need be, and brings it to the device. `planned` is the checksum of what will take its place.
    /// EBUSY when the file changes meanwhile.
    static std::expected<BackupFile, SystemError> create(const std::string& folder, const std::string& path,
                                                         int original, const ContentChecksum& planned,
                                                         SystemCalls& calls);

    BackupFile(BackupFile&& other) noexcept;
    BackupFile& operator=(BackupFile&&) = delete;
    /// Removes it, unless it is needed.
    ~BackupFile();

    const std::string& path() const { return path_; }

    /// The original is about to be changed: from now on the backup stays until `remove`, however this process ends.
    void setNeeded() { isNeeded_ = true; }

    /// Makes the original hold its former contents again, on the device too. EIO when the backup gives others back.
    std::expected<void, SystemError> restore(int original) const;

    /// For good.
    std::expected<void, SystemError> remove();

    /// Whether a file of that name is a backup: ".backup" at its end.
    static bool isName(std::string_view name);
    /// Whether this very process may have made it: its number comes first.
    static bool isOwnName(std::string_view name);

private:
    BackupFile(std::string path, FileDescriptor file, SystemCalls& calls)
        : path_(std::move(path)), file_(std::move(file)), calls_(&calls) {}

    static std::expected<BackupFile, SystemError> createEmpty(const std::string& folder, SystemCalls& calls);
    std::expected<void, SystemError> fill(const std::string& path, int original, const ContentChecksum& planned);

    std::string path_; // empty once there is nothing to remove
    FileDescriptor file_;
    SystemCalls* calls_;
    std::int64_t contentsOffset_ = 0;
    ContentChecksum contents_;
    bool isNeeded_ = false;
};

} // namespace quelm
