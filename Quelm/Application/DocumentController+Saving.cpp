#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/DocumentJournals.h"
#include "Quelm/Application/FileDialogs.h"
#include "Quelm/Application/FileExpectation.h"
#include "Quelm/Application/RecentFiles.h"
#include "Quelm/Documents/DocumentSaving.h"
#include "Quelm/Documents/SameFile.h"
#include "Quelm/Foundation/VisibleText.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quelm {

void DocumentController::save(EditorView& window) {
    if (window.isOpening() || revertings_.contains(&window))
        return;
    if (const auto& location = window.document().configuration().fileLocation())
        write(window, *location);
    else
        saveAs(window);
}

void DocumentController::saveAs(EditorView& window) {
    if (window.isOpening())
        return;
    window.finishEditing();
    QPointer<QFileDialog>& dialog = saveDialogs_[&window];
    if (dialog)
        return dialog->activateWindow();
    dialog = makeSaveDialog(window, window.document().configuration());
    connect(dialog, &QFileDialog::fileSelected, &window, [this, &window](const QString& path) {
        if (isOpenElsewhere(window, path))
            refuseSaving(window, path);
        else
            write(window, path);
    });
    connect(dialog, &QDialog::rejected, &window, [this, &window] { cancelClosing(window); });
    dialog->open();
}

/// Two windows on one file would overwrite each other's changes.
bool DocumentController::isOpenElsewhere(const EditorView& window, const QString& path) const {
    const EditorView* owner = windowOf(path);
    const auto isBeingSavedTo = [&](const auto& saving) {
        return saving.first != &window && leadToSameFile(saving.second.path, path);
    };
    return (owner && owner != &window) || std::ranges::any_of(savings_, isBeingSavedTo);
}

void DocumentController::refuseSaving(EditorView& window, const QString& path) {
    cancelClosing(window);
    alert(&window, tr("No se pudo guardar «%1».").arg(visibleCharacters(QFileInfo(path).fileName())),
          tr("El archivo está abierto en otra ventana."));
}

void DocumentController::write(EditorView& window, const QString& path) {
    window.finishEditing();
    // The document as it is is what the user wants.
    cancelReverting(window);
    outsideChanges_.follower(window).cancelReload();
    if (const auto saving = savings_.find(&window); saving != savings_.end()) {
        // One after the other; what has been typed by then is saved with it.
        std::deque<QString>& waiting = saving->second.waiting;
        if (waiting.empty() || waiting.back() != path)
            waiting.push_back(path);
        return;
    }
    ++saveCount_;
    const auto document = window.sharedDocument();
    // What is typed from now on is another step than what is saved.
    if (const JSONTextView* editor = window.textEditor())
        editor->textView().editing().endTypingStep();
    const StateToken::Value token = document->stateToken().current();
    const auto expectation = outsideChanges_.follower(window).expectation(path);
    startInBackground(
        savingThreads_, this,
        [path, expectation, snapshot = document->snapshot(), options = startSaving(window, path, token)](
            std::stop_token) mutable -> std::expected<SavedFile, FileError> {
            if (expectation && expectation->isChanged(options.save.stop))
                return std::unexpected(FileError{.message = {}, .isCancellation = true});
            auto saved = saveDocument(path, snapshot, std::move(options.save));
            // Somebody has written the file while this was at it: asked as if it had been found before.
            if (saved || !saved.error().change || !expectation)
                return saved;
            expectation->noteChange(*saved.error().change);
            return std::unexpected(FileError{.message = {}, .isCancellation = true});
        },
        [this, path, document, owner = QPointer<EditorView>(&window), token,
         expectation](const std::expected<SavedFile, FileError>& result) {
            const SavingPurpose purpose{.isClosing = closingWhenSaved_.contains(owner), .quitting = quitting_};
            finishWriting(owner, *document, path, token, result);
            if (owner && expectation && expectation->change())
                askBeforeSavingOver(*owner, path, *expectation->change(), purpose);
            if (owner)
                outsideChanges_.follower(*owner).resume();
        })
        .detach();
}

void DocumentController::askBeforeSavingOver(EditorView& window, const QString& path, const FileStamp& found,
                                             SavingPurpose purpose) {
    const auto goOn = [this, &window, path, purpose] {
        if (purpose.isClosing)
            closingWhenSaved_.insert(&window);
        if (quitting_ == Quitting::no)
            quitting_ = purpose.quitting;
        write(window, path);
    };
    outsideChanges_.follower(window).askBeforeSaving(found, goOn);
}

bool DocumentController::isInHand(EditorView& window) const {
    return savings_.contains(&window) || revertings_.contains(&window);
}

DocumentController::SavingOptions DocumentController::startSaving(EditorView& window, const QString& path,
                                                                  StateToken::Value token) {
    SavingOptions options{.progress = std::make_shared<WorkProgress>(), .save = {}};
    Saving& saving = savings_[&window];
    saving.token = token;
    saving.path = path;
    options.save.stop = saving.stop.get_token();
    options.save.progress = options.progress.get();
    if (journals_) {
        options.save.backupFolder = QFile::encodeName(journals_->folder()).toStdString();
        options.save.willReplace = journals_->willSave(window, path);
    }
    window.model().noteSavingStarted(options.progress);
    return options;
}

/// The window, which may be gone, is the document's.
void DocumentController::finishWriting(EditorView* window, JSONDocument& document, const QString& path,
                                       StateToken::Value token, const std::expected<SavedFile, FileError>& result) {
    --saveCount_;
    if (result) {
        if (document.configuration().fileLocation() != path)
            RecentFiles::note(path);
        document.configuration().setFileLocation(path);
        document.configuration().setFileState(FileState{result->stamp, result->checksum});
        document.noteSaved(token);
        if (window)
            outsideChanges_.follower(*window).noteInStep();
    }
    if (window && journals_) {
        if (!result)
            journals_->didNotSave(*window);
        else if (result->isDurable)
            journals_->didSave(*window, path);
        else
            journals_->didSaveInDoubt(*window);
    }
    if (window && !result)
        cancelClosing(*window);
    if (!result && !result.error().isCancellation)
        alert(window, tr("No se pudo guardar «%1».").arg(visibleCharacters(QFileInfo(path).fileName())),
              result.error().message);
    if (window)
        finishSaving(*window);
    announceIdle();
}

void DocumentController::finishSaving(EditorView& window) {
    window.model().noteSavingFinished();
    auto node = savings_.extract(&window);
    const Saving& saving = node.mapped();
    if (!saving.waiting.empty() && !saving.stop.stop_requested()) {
        write(window, saving.waiting.front());
        savings_[&window].waiting.assign(saving.waiting.begin() + 1, saving.waiting.end());
        return;
    }
    // What is asked about may have been saved meanwhile.
    const bool isAnswered = dismissSettledQuestion(window);
    // What was saved may be less than what the window holds now: closing asks again then.
    if (closingWhenSaved_.erase(&window) > 0 || isAnswered || quitting_ != Quitting::no)
        goOnClosing(window);
}

} // namespace quelm
