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
        /// The file is not there, or cannot be read, which may be otherwise at a later start.
        unreachable,
        /// The journal itself cannot be read, which may be otherwise at a later start. All that is known is its path.
        unreadable,
    };
    State state = State::damaged;
    std::optional<JournalRecovery> journal;
    std::optional<FileBackup> backup;
    /// Of the document's file, or of a journal that is unreadable; absent for a document without one, or when the journal does not tell.
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
    /// Of the file as it is on the device; absent without one, and unknown of one from which the content was not made.
    std::optional<FileState> state;
    /// To go on with; absent when there is none, or when it was damaged.
    std::optional<JournalFile> journal;
    /// Of which not all could be understood: to be kept aside once the document is safe in another one.
    std::optional<JournalRecovery> damagedJournal;
    JournalNumbers numbers;
    /// The backup that the content began from; it is to be removed when its file has been saved, and kept aside when
    /// the document is given up.
    std::optional<FileBackup> backup;
    /// Whether records were left out because they were damaged.
    bool isPartial = false;
};

/// Repeats the changes on the file's contents (or the backup's, or a new document's). The file itself is not touched.
/// Of what is not recoverable, or turned out not to be, the error says where it is kept aside; when the file is not
/// there for now, memory was lacking, or `stop` was requested, it stays as it is, to be found again. For another thread than the main one.
std::expected<RecoveredDocument, FileError> recover(LeftBehind leftBehind, const std::stop_token& stop = {});

/// Renames what is not recoverable so that it is not offered again; the new paths of the journal, the backup, or both,
/// as a user reads them: «a» y «b».
std::expected<QString, FileError> keepAside(LeftBehind leftBehind);

/// Takes the changes away, for good. A backup, which may be all that there is of a file, is kept aside.
void discard(LeftBehind leftBehind);

} // namespace quelm
