#pragma once

#include "FileCore/FileBackup.h"
#include "Quelm/Recovery/JournalSummary.h"

#include <cstddef>
#include <cstdint>
#include <expected>
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

/// Why there is no start.
enum class NoRecoveryStart : std::uint8_t {
    /// No file that a base names holds what it did.
    changed,
    /// One of them is not there, or cannot be read: it may hold it another time, as when a device is connected again.
    unreachable,
    cancelled,
};

/// That of the last base whose bytes its file holds, or a backup of it does. Reads the files that may hold them.
std::expected<RecoveryStart, NoRecoveryStart> findRecoveryStart(const JournalSummary& summary,
                                                                std::span<const FileBackup> backups,
                                                                const std::stop_token& stop,
                                                                SystemCalls& calls = SystemCalls::real());

/// Whether the backup is of that file, by whatever path.
bool isBackupOf(const FileBackup& backup, const std::string& path);

} // namespace quelm
