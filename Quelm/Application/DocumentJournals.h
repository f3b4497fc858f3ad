#pragma once

#include "FileCore/FileBackup.h"
#include "Quelm/Recovery/DocumentJournal.h"
#include "Quelm/Recovery/JournalThread.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace quelm {

class EditorView;
class JSONDocument;
struct RecoveredDocument;

/// The journals of the documents that have windows. What is still followed at the end of its life keeps its journal, to
/// be recovered at the next start. For the main thread.
class DocumentJournals : public QObject {
    Q_OBJECT

public:
    explicit DocumentJournals(QString folder, QObject* parent = nullptr);
    ~DocumentJournals() override;

    const QString& folder() const { return folder_; }

    /// The window's document, as it is, is what its file holds, or a new one: its changes are kept from now on.
    void follow(EditorView& window);
    /// The window's document is what was recovered, whose journal goes on. Takes journal and backup.
    void follow(EditorView& window, RecoveredDocument& recovered);

    /// As `DocumentJournal::willSave`; empty for a window that is not followed.
    std::function<bool(const ContentChecksum&)> willSave(EditorView& window, const QString& path);
    /// The file at the path is what was saved.
    void didSave(EditorView& window, const QString& path);
    /// As `DocumentJournal::didSaveInDoubt`.
    void didSaveInDoubt(EditorView& window);
    void didNotSave(EditorView& window);

    /// As `DocumentJournal::standAlone`.
    void standAlone(EditorView& window);

    /// The window has closed, and its changes are saved or not wanted. It may be half destroyed.
    void giveUp(EditorView* window);

    /// Returns when all changes up to now are on the device, as far as that can be.
    void flush();

Q_SIGNALS:
    /// Changes of a document made from now on may not be recovered after an unexpected end; told once of each.
    void didFail(const QString& message);

private:
    /// For the journal thread alone, which waits for the device.
    struct RecoveredBackup {
        std::optional<FileBackup> held;
    };
    struct Followed {
        /// Outlives the journal.
        std::shared_ptr<JSONDocument> document;
        std::unique_ptr<DocumentJournal> journal;
        /// What the document was recovered from, until that file is saved or the document is given up.
        std::shared_ptr<RecoveredBackup> backup;
    };
    void add(EditorView& window, std::unique_ptr<DocumentJournal> journal, std::optional<FileBackup> backup);
    Followed* find(EditorView& window);
    const QString folder_;
    JournalThread thread_;
    std::unordered_map<EditorView*, Followed> followed_;
};

} // namespace quelm
