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
    void didSave(EditorView& window);
    void didNotSave(EditorView& window);

    /// The window has closed, and its changes are saved or not wanted. It may be half destroyed.
    void giveUp(EditorView* window);

    /// Returns when all changes up to now are on the device, as far as that can be.
    void flush();

Q_SIGNALS:
    /// Changes made from now on may not be recovered after an unexpected end; told once.
    void didFail(const QString& message);

private:
    struct Followed {
        /// Outlives the journal.
        std::shared_ptr<JSONDocument> document;
        std::unique_ptr<DocumentJournal> journal;
        /// What the document was recovered from, until it is saved or given up.
        std::optional<FileBackup> backup;
    };
    void add(EditorView& window, std::unique_ptr<DocumentJournal> journal, std::optional<FileBackup> backup);
    Followed* find(EditorView& window);
    static void removeBackup(Followed& followed);

    const QString folder_;
    JournalThread thread_;
    std::unordered_map<EditorView*, Followed> followed_;
    bool hasFailed_ = false;
};

} // namespace quelm
