#pragma once

#include "FileCore/FileSaving.h"
#include "Quelm/Application/OutsideChanges.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Documents/FileError.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/BackgroundTask.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <cstdint>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <stop_token>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class QFileDialog;
class QMessageBox;

namespace quelm {

class DocumentJournals;
class SettingsView;
struct RecoveredDocument;

/// Opens documents in windows, saves and reverts them, and closes the windows. Files are read and written off the main
/// thread; what fails is told in an alert. It lives longer than all of its windows.
class DocumentController : public QObject {
    Q_OBJECT

public:
    /// `prepareWindow` gives every new window its menus before it is shown.
    explicit DocumentController(std::function<void(EditorView&)> prepareWindow, QObject* parent = nullptr);
    ~DocumentController() override;

    const std::vector<EditorView*>& windows() const { return windows_; }

    // Opening.

    /// A window with an empty object.
    void newDocument();

    /// A window with the file, or the window that has it already. It appears when the file has been read, or after a
    /// moment to say that this takes longer.
    void open(const QString& path);

    /// The same with several, one after the other.
    void open(const QStringList& paths);

    /// Opens the files that were open when the user quit, one after the other, and says nothing of those that cannot be
    /// opened any more. A window with an empty object when there is none that can.
    void reopen(const QStringList& paths);

    /// Asks which files to open, first in the folder of the window's document.
    void showOpenDialog(EditorView& window);

    // Recovery.

    /// Keeps unsaved changes in journals in that folder from now on, where backups go too.
    void keepJournals(const QString& folder);

    /// A window with the unsaved document, whose file stays as it is until it is saved.
    EditorView& openRecovered(RecoveredDocument recovered);

    /// An alert over the window, or over none.
    void tell(QWidget* window, const QString& message, const QString& details);

    // Saving.

    /// Writes the window's document to its file, or asks for one. Nothing while the file is read anew.
    void save(EditorView& window);

    /// Asks for a file, which becomes the document's when it has been written.
    void saveAs(EditorView& window);

    /// Gives the changes of the window's document up, after asking, for what its file holds now. The document is kept
    /// from being edited until that has been read, and stays as it is when it cannot be read. Nothing without a file or
    /// changes, or while the document is being saved.
    void revert(EditorView& window);

    /// Whether the document is being saved, or given up for what its file holds.
    bool isInHand(EditorView& window) const;

    // Closing.

    /// Closes all windows, once it has been asked what becomes of their changes and their exports are written; none if
    /// the question is cancelled, or something cannot be saved or exported. Their files are remembered for `reopen`.
    void quit();

    /// The program ends without closing its windows: what is being typed becomes part of their documents. Remembers
    /// their files, but for those with changes, which are recovered at the next start, and where the windows are.
    void rememberSession();

    /// Asks what becomes of the window's changes before it closes, and lets an export that is being written come to its
    /// end: the window closes by itself then, or stays if that fails.
    bool eventFilter(QObject* watched, QEvent* event) override;

    // The user's preferences.

    /// One window of its own for all documents, which closes with the last of theirs.
    void showSettings();
    /// Null while it is closed.
    SettingsView* settings() const;

    // The end.

    /// Whether there is neither a window nor an alert, and nothing being opened or saved.
    bool isIdle() const { return windows_.empty() && pendingOpenings_.empty() && alertCount_ == 0 && saveCount_ == 0; }

    /// Whether files were to be opened and none could.
    bool hasOnlyFailed() const { return hasFailed_ && !hasOpened_; }

Q_SIGNALS:
    /// A window, of a document or another one, that is about to be shown.
    void madeWindow(QWidget& window);
    void becameIdle();

private:
    EditorView* addWindow(std::shared_ptr<JSONDocument> document);
    void placeWindow(EditorView& window) const;
    void removeWindow(EditorView* window);
    void alert(QWidget* parent, const QString& message, const QString& details);
    void announceIdle();
    EditorView& windowForRecovered(const RecoveredDocument& recovered);
    void closeUntouched(const EditorView& newcomer);

    EditorView* startOpening(const QString& path);
    void finishOpening(EditorView* window, const QString& path, std::expected<LoadedDocument, FileError> loaded);
    void reportOpening(EditorView* window, const QString& path, const FileError& error);
    enum class Origin : std::uint8_t { user, session };
    void openInTurns(const QStringList& paths, Origin origin);
    void openNext();

    void write(EditorView& window, const QString& path);
    bool isOpenElsewhere(const EditorView& window, const QString& path) const;
    void refuseSaving(EditorView& window, const QString& path);
    /// The window that shows the file; null when none does.
    EditorView* windowOf(const QString& path) const;
    struct SavingOptions {
        /// Outlives the saving.
        std::shared_ptr<WorkProgress> progress;
        SaveOptions save;
    };
    SavingOptions startSaving(EditorView& window, const QString& path, StateToken::Value token);
    void finishWriting(EditorView* window, JSONDocument& document, const QString& path, StateToken::Value token,
                       const std::expected<SavedFile, FileError>& result);
    void finishSaving(EditorView& window);
    enum class Quitting : std::uint8_t {
        no,
        asking,
        /// All that is unsaved is to be saved first.
        saving,
    };
    /// What a save was part of that has to be asked about.
    struct SavingPurpose {
        bool isClosing = false;
        Quitting quitting = Quitting::no;
    };
    void askBeforeSavingOver(EditorView& window, const QString& path, const FileStamp& found, SavingPurpose purpose);
    bool canRevert(EditorView& window) const;
    void startReverting(EditorView& window);
    void finishReverting(EditorView& window, std::expected<LoadedDocument, FileError> loaded);
    void cancelReverting(EditorView& window);

    bool isToBeAskedAbout(EditorView& window) const;
    bool isBeingSavedAsItIs(EditorView& window) const;
    void askBeforeClosing(EditorView& window);
    bool dismissSettledQuestion(EditorView& window);
    void saveAndClose(EditorView& window);
    void discardAndClose(EditorView& window);
    void cancelClosing(EditorView& window);
    void goOnClosing(EditorView& window);
    void finishExporting(EditorView& window, bool succeeded);
    void continueQuitting();
    void stopQuitting();
    void closeAll();
    std::vector<EditorView*> unsettledWindows() const;
    void askAboutAll(const std::vector<EditorView*>& windows);
    void saveAll(const std::vector<EditorView*>& windows);
    void dismissQuittingQuestion();
    void saveAllAndQuit();
    void discardAllAndQuit();
    QStringList sessionFiles() const;

    std::function<void(EditorView&)> prepareWindow_;
    std::vector<EditorView*> windows_;
    /// Null while no journals are kept.
    std::unique_ptr<DocumentJournals> journals_;
    OutsideChanges outsideChanges_;
    QPointer<SettingsView> settings_;
    std::unordered_map<EditorView*, BackgroundTask> openings_;
    struct PendingOpening {
        QString path;
        Origin origin = Origin::user;
    };
    /// Files that are still to be opened, in a turn of the event loop each, and windows of the session that are being.
    std::deque<PendingOpening> pendingOpenings_;
    std::unordered_set<EditorView*> reopened_;
    std::unordered_map<EditorView*, BackgroundTask> revertings_;
    /// Windows whose changes are being asked about.
    std::unordered_map<EditorView*, QPointer<QMessageBox>> questions_;
    /// Windows that close as soon as they are saved, or their export is written.
    std::unordered_set<EditorView*> closingWhenSaved_;
    std::unordered_set<EditorView*> closingWhenExported_;
    /// Windows that close with their changes: those up to that state.
    std::unordered_map<EditorView*, StateToken::Value> discarding_;
    struct Saving {
        /// The state that is saved.
        StateToken::Value token = 0;
        QString path;
        std::stop_source stop;
        /// Where it is to be saved afterwards.
        std::deque<QString> waiting;
    };
    std::unordered_map<EditorView*, Saving> savings_;
    /// The dialogs that ask where to save.
    std::unordered_map<EditorView*, QPointer<QFileDialog>> saveDialogs_;
    Quitting quitting_ = Quitting::no;
    /// About several windows.
    QPointer<QMessageBox> quittingQuestion_;
    /// Their own, so that reading does not keep saving waiting. Of one window and of one file, one save is at work.
    QThreadPool savingThreads_;
    int alertCount_ = 0;
    int saveCount_ = 0;
    bool hasOpened_ = false;
    bool hasFailed_ = false;
};

} // namespace quelm
