#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/FileDescriptor.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"
#include "TextCore/SharedText.h"

#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace quelm {

/// The former contents of a file that was being written in place when the process ended. Locked for as long as this or
/// a copy of it lives: no other process finds it meanwhile, and whoever is at work on one of its own keeps that locked
/// too. The calls by which it was found must outlive it.
struct FileBackup {
    /// The backup itself.
    std::string path;
    /// The file that it is of; empty when a damaged one does not tell it.
    std::string original;
    /// Of the former contents; none of any contents when it is damaged.
    ContentChecksum checksum;
    /// It was finished once, so that the file may need it, but what it holds now is not what was written.
    bool isDamaged = false;
    /// The backup, locked.
    std::shared_ptr<const FileDescriptor> lock = nullptr;
};

/// Those of a folder that were finished, oldest first. One whose file holds its contents anyway (nothing had been
/// written yet), or all of the new ones, is removed, and one that was never finished too, since the file is not touched
/// before its backup is. O(bytes).
std::vector<FileBackup> findBackups(const std::string& folder, SystemCalls& calls = SystemCalls::real());

/// The former contents; an error also when they are not what the checksum says.
std::expected<SharedText, SystemError> readBackup(const FileBackup& backup, SystemCalls& calls = SystemCalls::real());

/// For good. Without effect when it is not there any more, or another process has it.
void removeBackup(const FileBackup& backup, SystemCalls& calls = SystemCalls::real());

/// Renames it within its folder, so that it is not found again, as `JournalRecovery::keepAside` does. The new path.
std::expected<std::string, SystemError> keepBackupAside(const FileBackup& backup,
                                                        SystemCalls& calls = SystemCalls::real());

/// Removes those of the file at the absolute path that this very process left in the folder when it could not bring
/// the former contents back, and that nothing holds: a later save of the file has made them worthless. Those of other
/// processes stay.
void removeOwnBackups(const std::string& original, const std::string& folder,
                      SystemCalls& calls = SystemCalls::real());

} // namespace quelm
