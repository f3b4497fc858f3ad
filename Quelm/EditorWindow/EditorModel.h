#pragma once

#include "FileCore/WorkProgress.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/TextValidator.h"
#include "Quelm/EditorWindow/ExportDocument.h"
#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/Foundation/Clock.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/TextLocation.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <deque>
#include <expected>
#include <memory>
#include <optional>
#include <string>

namespace quelm {

/// The controller of a document window: its tree editor and its validator, the operations on the whole document that
/// may fail or take long, and what the window is to show of them. It has no widgets. A property set to the value it
/// already holds announces nothing. For the main thread.
///
/// One operation at a time, a change of the mode or a formatting, has the document in hand (`isBusy`). Its work is done
/// on another thread over a copy; until then the document must not be edited by others: the tree editor refuses, steps
/// can neither be undone nor done again, and the window keeps its text read-only. A document that is applied anew
/// meanwhile cancels it. What is connected to its signals, or to those of the document, must not destroy the model: it
/// may ask for that from the event loop.
class EditorModel : public QObject {
    Q_OBJECT

public:
    /// The clock must outlive the model.
    explicit EditorModel(std::shared_ptr<JSONDocument> document, Clock& clock = Clock::system());
    /// What is under way is cancelled, but for an export that is being written, which goes on.
    ~EditorModel() override;

    JSONDocument& document() const { return *document_; }
    const std::shared_ptr<JSONDocument>& sharedDocument() const { return document_; }
    TreeEditor& tree() { return tree_; }
    TextValidator& validator() { return validator_; }

    /// The window's steps, held weakly; also the tree editor's from then on.
    UndoManager* undoManager() const { return undoManager_; }
    void setUndoManager(UndoManager* undoManager);

    // What the window shows.

    /// For as long as it is there, the window asks for the file that it is to be written to.
    const std::shared_ptr<const ExportDocument>& export_() const { return exportDocument_; }
    void setExport(std::shared_ptr<const ExportDocument> exportDocument);

    /// Lines for an alert; the first says what could not be done, as a rule.
    const std::optional<QString>& errorMessage() const { return errorMessage_; }
    void setErrorMessage(std::optional<QString> errorMessage);

    /// Where the text editor is asked to put its caret.
    const std::optional<TextLocation>& goTo() const { return goTo_; }
    void setGoTo(std::optional<TextLocation> goTo);

    bool isGoToLinePresented() const { return isGoToLinePresented_; }
    void setGoToLinePresented(bool isPresented);

    /// Whether a change of the mode or a formatting has the document in hand.
    bool isBusy() const { return isBusy_; }

    /// Whether an operation, the writing of an export or saving has been under way for longer than `patience`.
    bool isWorkShown() const { return shownWork_ != ShownWork(); }
    /// How far the saving that was begun last is; null while none is shown.
    const std::shared_ptr<const WorkProgress>& shownSaving() const { return shownWork_.saving; }
    static constexpr std::chrono::milliseconds patience{500};

    /// Whether an export is being written or waits for that.
    bool isExporting() const { return exporting_.task.isRunning() || !waitingExports_.empty(); }

    // Operations. Each does nothing when it cannot be done now.

    /// Shows the document in the other editor. Text that is not JSON stays, with a message and the caret at its error.
    /// The window's steps are dropped when the editor has changed.
    void switchMode(EditorMode mode);

    /// Rewrites the whole document: a step "Formato". Text that is not JSON stays, with a message and the caret at its
    /// error.
    void format(const JSONStyle& style);

    /// Sets `export_` to a copy of the document as it is, or reports the error that the validator knows of its text.
    void prepareExport(const JSONStyle& style);

    /// Writes it on another thread; the file is there when all of it is, and untouched when anything fails, which is
    /// reported. One at a time: it waits for those that were asked for before.
    void writeExport(std::shared_ptr<const ExportDocument> exportDocument, const QString& path);

    /// Where the former contents go of a file that an export is written into, see `SaveOptions`; none at first.
    void setBackupFolder(std::string folder) { backupFolder_ = std::move(folder); }

    /// Ends the operation at once, without effect, and asks the export that is being written to end without effect,
    /// which may come too late; those that wait are dropped. Saving is asked likewise where it is shown: a key that was
    /// meant for something else must not keep a file from being written. Nothing of all that is reported.
    void cancelWork();

    // Saving, which others do while the document goes on being edited.

    /// The document is being saved; once more when it is saved again meanwhile.
    void noteSavingStarted(std::shared_ptr<const WorkProgress> progress);
    /// One of those has come to its end.
    void noteSavingFinished();

    /// Sends the caret to the error that the validator knows of the text.
    void goToError();

    // The text editor.

    /// The user changed the text: it counts as edited, and is validated when the typing pauses.
    void noteTextChange();

    /// The text editor shows the document, or another content of it: what is known of the text is taken from the
    /// content, and it is validated at once where the content does not tell.
    void validateShownText();

Q_SIGNALS:
    void exportChanged();
    void errorMessageChanged();
    void goToChanged();
    void isGoToLinePresentedChanged();
    void isBusyChanged();
    void isWorkShownChanged();
    /// An export was begun to be written, or that has ended; `succeeded` says how.
    void exportingStarted();
    void exportingFinished(bool succeeded);
    /// Whoever saves the document is asked to end that without effect.
    void savingCancelled();
    /// An operation is about to read the whole document: whoever shows it hands in what is open in a field or being
    /// composed.
    void willReadDocument();

private:
    /// A piece of work that may go on for long.
    struct Work {
        BackgroundTask task;
        DelayedCall patienceCall;
        bool isLong = false;
    };
    struct ShownWork {
        bool isOther = false;
        std::shared_ptr<const WorkProgress> saving;
        friend bool operator==(const ShownWork&, const ShownWork&) = default;
    };
    struct Export {
        std::shared_ptr<const ExportDocument> document;
        QString path;
    };

    void begin(Work& work);
    void end(Work& work);
    void updateWorkShown();

    void setBusy(bool isBusy);
    void setDocumentLocked(bool isLocked);
    void finishSwitching(const std::expected<void, ConversionError>& result);
    void finishFormatting(ContentConversion::Result result, UndoManager* undoManager);
    void report(const QString& firstLine, const ConversionError& error);
    void dropOperation();

    void startNextExport();
    void cancelExports();
    void finishExport(const QString& path, const std::expected<void, ExportDocument::Failure>& result);
    void reportExport(const QString& path, const ExportDocument::Failure& failure);

    TextRope shownText() const;

    const std::shared_ptr<JSONDocument> document_;
    Clock& clock_;
    TreeEditor tree_;
    TextValidator validator_;
    std::shared_ptr<const ExportDocument> exportDocument_;
    std::optional<QString> errorMessage_;
    std::optional<TextLocation> goTo_;
    bool isGoToLinePresented_ = false;
    bool isBusy_ = false;
    QPointer<UndoManager> undoManager_;
    /// The change of the mode or the formatting.
    Work operation_;
    Work exporting_;
    Work saving_;
    ShownWork shownWork_;
    int savingCount_ = 0;
    std::shared_ptr<const WorkProgress> savingProgress_;
    /// The user has called it off: how it ends is not told.
    bool isExportCancelled_ = false;
    std::string backupFolder_;
    /// Those that are not begun.
    std::deque<Export> waitingExports_;
};

} // namespace quelm
