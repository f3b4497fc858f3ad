#pragma once

#include "FileCore/FileDescriptor.h"
#include "FileCore/JournalContents.h"
#include "FileCore/JournalFile.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <expected>
#include <optional>
#include <string>

namespace quelm {

/// A journal that was left behind, locked and read. Movable, not copyable.
class JournalRecovery {
public:
    /// Absent when it is not there any more, or another process has it. Nothing is written. Besides what the system
    /// says, EINVAL for what is no regular file and EFBIG for one that this machine's memory cannot hold.
    static std::expected<std::optional<JournalRecovery>, SystemError> open(const std::string& path,
                                                                           SystemCalls& calls = SystemCalls::real());

    JournalRecovery(JournalRecovery&&) noexcept = default;
    JournalRecovery& operator=(JournalRecovery&&) noexcept = default;
    /// Leaves the file as it is, unlocked.
    ~JournalRecovery() = default;

    const std::string& path() const { return path_; }
    const JournalContents& contents() const { return contents_; }

    /// Cuts off what comes after the last record, and goes on with the file. The contents must not be of an unknown
    /// kind.
    std::expected<JournalFile, SystemError> continueWriting() &&;

    /// Takes the file away, for good.
    std::expected<void, SystemError> remove() &&;

    /// Renames the file within its folder, so that it is not found again as one that was left behind: it gets another
    /// extension, ".apartado", with a number if need be. The new path.
    std::expected<std::string, SystemError> keepAside() &&;

private:
    JournalRecovery(std::string path, FileDescriptor file, JournalContents contents, SystemCalls& calls);

    std::string path_;
    FileDescriptor file_;
    JournalContents contents_;
    SystemCalls* calls_;
};

} // namespace quelm
