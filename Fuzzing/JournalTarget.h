#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What reads the journals and backups that a process left behind, fed with any bytes. A broken promise stops the
/// process. The first byte says what the others are, see `JournalForm`.
namespace quelm::fuzzing {

enum class JournalForm : unsigned char {
    /// The bytes of a journal.
    file,
    /// Chunks, each with its length (2 bytes, little-endian): the bytes of the file that the journal is of, then the
    /// payloads of its records. What checksums would keep from being understood comes through in this way.
    records,
    /// The bytes of a backup.
    backup,
};

/// Returns how many records it could repeat.
std::size_t feedJournal(std::string_view input);

/// An input of each form.
std::string journalInput(std::string_view journal);
std::string recordsInput(std::string_view file, const std::vector<std::string>& payloads);
std::string backupInput(std::string_view backup);

} // namespace quelm::fuzzing
