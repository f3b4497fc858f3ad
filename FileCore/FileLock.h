#pragma once

#include "FileCore/FileDescriptor.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <expected>
#include <string>

/// What processes that find each other's files in a folder agree on: whoever does not hold a file's lock (flock(2))
/// neither renames nor removes it. Since a file may go between its opening and its lock, it must be looked at again
/// after that.
namespace quelm {

/// Takes the lock without waiting; false when another one has it.
std::expected<bool, SystemError> tryLock(const FileDescriptor& file, SystemCalls& calls);

/// Whether the path, no symbolic link, names that very file.
std::expected<bool, SystemError> isFileAt(const std::string& path, const FileDescriptor& file, SystemCalls& calls);

/// Takes the name of a locked file away, for good (the folder is synchronized); without effect when the path does not
/// name it any more.
std::expected<void, SystemError> removeLocked(const std::string& path, const FileDescriptor& file, SystemCalls& calls);

} // namespace quelm
