#pragma once

#include "FileCore/FileBackup.h"
#include "Quelm/Recovery/JournalSummary.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace quelm {

/// From where a journal's records can be repeated, given what is on the device.
struct RecoveryStart {
    enum class Source : std::uint8_t {
        nothing, ///< the records give the whole content themselves
        file,
        backup,
    };
    /// One of the summary's.
    std::size_t index = 0;
    Source source = Source::nothing;
    /// Which of the backups.
    std::size_t backup = 0;
};

/// That of the last base whose bytes its file holds, or a backup of it does. Absent when there is none, or `stop` is
/// requested. Reads the files that may hold them.
std::optional<RecoveryStart> findRecoveryStart(const JournalSummary& summary, std::span<const FileBackup> backups,
                                               const std::stop_token& stop);

/// Whether the backup is of that file, by whatever path.
bool isBackupOf(const FileBackup& backup, const std::string& path);

} // namespace quelm
