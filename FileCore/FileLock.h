#pragma once

#include "FileCore/FileDescriptor.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <expected>
#include <optional>
#include <string>

/// What processes that find each other's files in a folder agree on: whoever does not hold a file's lock (flock(2))
/// neither renames nor removes it. Since a file may go between its opening and its lock, it must be looked at again
/// after that.
namespace quelm {

/// Opens the file that the path, no symbolic link, names, and takes its lock without waiting; absent when it is not there
/// any more or another one has the lock. The descriptor reads; it writes as well where that is allowed, since some
/// systems (NFS) lock nothing else.
std::expected<std::optional<FileDescriptor>, SystemError> openLocked(const std::string& path, SystemCalls& calls);

/// Takes the lock without waiting; false when another one has it.
std::expected<bool, SystemError> tryLock(const FileDescriptor& file, SystemCalls& calls);

/// Whether the path, no symbolic link, names that very file.
std::expected<bool, SystemError> isFileAt(const std::string& path, const FileDescriptor& file, SystemCalls& calls);

/// Takes the name of a locked file away, for good (the folder is synchronized); without effect when the path does not
/// name it any more.
std::expected<void, SystemError> removeLocked(const std::string& path, const FileDescriptor& file, SystemCalls& calls);

/// Renames a locked file within its folder, so that its extension is another one: ".apartado" follows the name, with a
/// number if need be. The new path, which survives a loss of power. ENOENT when the path does not name the file any
/// more.
std::expected<std::string, SystemError> keepLockedAside(const std::string& path, const FileDescriptor& file,
                                                        SystemCalls& calls);

} // namespace quelm
