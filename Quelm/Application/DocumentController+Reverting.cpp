#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/RevertQuestion.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Foundation/VisibleText.h"

namespace quelm {

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
    outsideChanges_.follower(window).cancelReload();
    window.setEditingLocked(true);
    revertings_[&window] = startInBackground(
        &window,
        [location = *window.document().configuration().fileLocation()](std::stop_token stop) {
            return loadDocument(location, std::move(stop));
        },
        [this, &window](std::expected<LoadedDocument, FileError> loaded) {
            finishReverting(window, std::move(loaded));
        });
}

void DocumentController::finishReverting(EditorView& window, std::expected<LoadedDocument, FileError> loaded) {
    if (loaded) {
        window.document().configuration().setFileState(loaded->state);
        window.document().apply(std::move(loaded->content));
    }
    cancelReverting(window);
    FileFollower& follower = outsideChanges_.follower(window);
    if (loaded)
        follower.noteInStep();
    follower.resume();
    if (!loaded)
        alert(&window,
              tr("No se pudo volver a leer «%1».")
                  .arg(visibleCharacters(window.document().configuration().displayName())),
              loaded.error().message);
    else if (dismissSettledQuestion(window))
        goOnClosing(window);
}

void DocumentController::cancelReverting(EditorView& window) {
    if (revertings_.erase(&window) > 0)
        window.setEditingLocked(false);
}

} // namespace quelm
