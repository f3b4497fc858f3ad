#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"
#include "TextCore/SharedText.h"

#include <expected>
#include <string>
#include <vector>

namespace quelm {

/// The former contents of a file that was being written in place when the process ended. A process that is still at
/// work holds a lock on its backups: they are not listed.
struct FileBackup {
    /// The backup itself.
    std::string path;
    /// The file that it is of.
    std::string original;
    /// Of the former contents.
    ContentChecksum checksum;
};

/// Those of a folder that are whole, oldest first. One whose file holds its contents anyway (nothing had been written
/// yet) is removed, and one that is not whole too, since the file is not touched before its backup is. O(bytes).
std::vector<FileBackup> findBackups(const std::string& folder, SystemCalls& calls = SystemCalls::real());

/// The former contents; an error also when they are not what the checksum says.
std::expected<SharedText, SystemError> readBackup(const FileBackup& backup, SystemCalls& calls = SystemCalls::real());

/// For good. Without effect when it is not there any more.
void removeBackup(const FileBackup& backup, SystemCalls& calls = SystemCalls::real());

} // namespace quelm
