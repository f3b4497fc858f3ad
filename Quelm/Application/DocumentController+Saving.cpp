#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/FileDialogs.h"
#include "Quelm/Application/RecentFiles.h"
#include "Quelm/Application/RevertQuestion.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Documents/DocumentSaving.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"

#include <QFileDialog>
#include <QFileInfo>

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
    QFileDialog* dialog = makeSaveDialog(window);
    const auto& location = window.document().configuration().fileLocation();
    dialog->selectFile(location.value_or(window.document().baseName() + QStringLiteral(".json")));
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
    return owner && owner != &window;
}

void DocumentController::refuseSaving(EditorView& window, const QString& path) {
    cancelClosing(window);
    alert(&window, tr("No se pudo guardar «%1».").arg(QFileInfo(path).fileName()),
          tr("El archivo está abierto en otra ventana."));
}

void DocumentController::write(EditorView& window, const QString& path) {
    window.finishEditing();
    // The document as it is is what the user wants.
    cancelReverting(window);
    ++saveCount_;
    const auto document = window.sharedDocument();
    const QPointer<EditorView> owner(&window);
    // What is typed from now on is another step than what is saved.
    if (const JSONTextView* editor = window.textEditor())
        editor->textView().editing().endTypingStep();
    const StateToken::Value token = document->stateToken().current();
    startSaving(window, token);
    startInBackground(
        savingThread_, this,
        [path, snapshot = document->snapshot()](std::stop_token) { return saveDocument(path, snapshot); },
        [this, path, document, owner, token](const std::expected<void, FileError>& result) {
            --saveCount_;
            if (result) {
                if (document->configuration().fileLocation() != path)
                    RecentFiles::note(path);
                document->configuration().setFileLocation(path);
                document->noteSaved(token);
            } else {
                if (owner)
                    cancelClosing(*owner);
                alert(owner, tr("No se pudo guardar «%1».").arg(QFileInfo(path).fileName()), result.error().message);
            }
            if (owner)
                finishSaving(*owner);
            announceIdle();
        })
        .detach();
}

void DocumentController::startSaving(EditorView& window, StateToken::Value token) {
    Saving& saving = savings_[&window];
    ++saving.count;
    saving.token = token;
}

void DocumentController::finishSaving(EditorView& window) {
    if (--savings_[&window].count > 0)
        return;
    savings_.erase(&window);
    // What is asked about may have been saved meanwhile.
    const bool isAnswered = dismissSettledQuestion(window);
    // What was saved may be less than what the window holds now: closing asks again then.
    if (closingWhenSaved_.erase(&window) > 0 || isAnswered)
        goOnClosing(window);
}

// Reverting.

bool DocumentController::canRevert(EditorView& window) const {
    return !window.isOpening() && window.document().configuration().fileLocation() && window.document().isModified() &&
           !savings_.contains(&window) && !revertings_.contains(&window);
}

void DocumentController::revert(EditorView& window) {
    window.finishEditing();
    if (canRevert(window))
        askBeforeReverting(window, window.document().configuration().displayName(),
                           [this, &window] { startReverting(window); });
}

void DocumentController::startReverting(EditorView& window) {
    if (!canRevert(window))
        return;
    window.setEditingLocked(true);
    revertings_[&window] = startInBackground(
        &window,
        [location = *window.document().configuration().fileLocation()](std::stop_token stop) {
            return loadDocument(location, std::move(stop));
        },
        [this, &window](std::expected<JSONContent, FileError> content) {
            finishReverting(window, std::move(content));
        });
}

void DocumentController::finishReverting(EditorView& window, std::expected<JSONContent, FileError> content) {
    if (content)
        window.document().apply(*std::move(content));
    cancelReverting(window);
    if (!content)
        alert(&window, tr("No se pudo volver a leer «%1».").arg(window.document().configuration().displayName()),
              content.error().message);
    else if (dismissSettledQuestion(window))
        goOnClosing(window);
}

void DocumentController::cancelReverting(EditorView& window) {
    if (revertings_.erase(&window) > 0)
        window.setEditingLocked(false);
}

} // namespace quelm
