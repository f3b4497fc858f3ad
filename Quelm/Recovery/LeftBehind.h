#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/FileBackup.h"
#include "FileCore/JournalFile.h"
#include "FileCore/JournalRecovery.h"
#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/EditorMode.h"
#include "Quelm/Documents/FileError.h"
#include "Quelm/Documents/FileState.h"
#include "Quelm/Recovery/JournalNumbers.h"

#include <QDateTime>
#include <QString>

#include <expected>
#include <optional>
#include <stop_token>
#include <vector>

namespace quelm {

/// Unsaved changes that a process left behind: a journal, a backup of a file that was being written in place, or both.
/// Holds the journal's lock. Movable, not copyable.
struct LeftBehind {
    enum class State : std::uint8_t {
        recoverable,
        /// The file is not what it was when the changes were made.
        stale,
        /// The journal cannot be understood from its beginning on, or names what is not there.
        damaged,
    };
    State state = State::damaged;
    std::optional<JournalRecovery> journal;
    std::optional<FileBackup> backup;
    /// Of the document's file; absent for a document without one, or when the journal does not tell.
    std::optional<QString> path;
    /// "datos.json", or "Sin título".
    QString name;
    /// When it was changed for the last time.
    QDateTime time;
};

/// What is left behind in the folder, oldest first, with the locks taken. Journals without anything to recover are
/// removed. Reads the journals and, for a checksum, the files that they are of: for another thread than the main one.
std::vector<LeftBehind> findLeftBehind(const QString& folder, const std::stop_token& stop = {});

/// A document with its unsaved changes.
struct RecoveredDocument {
    JSONContent content;
    EditorMode mode = EditorMode::tree;
    std::optional<QString> path;
    /// Of the file as it is on the device; absent without one.
    std::optional<FileState> state;
    /// To go on with; absent when the journal was damaged or there is none: a copy of what could not be read is kept aside.
    std::optional<JournalFile> journal;
    JournalNumbers numbers;
    /// The backup that the content began from; it is to be removed when the document has been saved or given up.
    std::optional<FileBackup> backup;
    /// Whether records were left out because they were damaged.
    bool isPartial = false;
};

/// Repeats the changes on the file's contents (or the backup's, or a new document's). The file itself is not touched.
/// The error of something that is not recoverable, or turned out not to be, says where the journal is kept aside. For
/// another thread than the main one.
std::expected<RecoveredDocument, FileError> recover(LeftBehind leftBehind, const std::stop_token& stop = {});

/// Renames the journal of what is not recoverable so that it is not offered again; the new path.
std::expected<QString, FileError> keepAside(LeftBehind leftBehind);

/// Takes it away, for good.
void discard(LeftBehind leftBehind);

} // namespace quelm
