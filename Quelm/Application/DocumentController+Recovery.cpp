#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/DocumentJournals.h"
#include "Quelm/Recovery/LeftBehind.h"

#include <utility>

namespace quelm {

void DocumentController::keepJournals(const QString& folder) {
    journals_ = std::make_unique<DocumentJournals>(folder);
    connect(journals_.get(), &DocumentJournals::didFail, this, [this](const QString& message) {
        alert(nullptr, tr("Los cambios sin guardar no se podrían recuperar si Quelm se cerrara inesperadamente."), message);
    });
}

EditorView& DocumentController::openRecovered(RecoveredDocument recovered) {
    EditorView* window = nullptr;
    if (recovered.path) {
        EditorView* shown = windowOf(*recovered.path);
        // The user is at work there already: what is recovered becomes a document without a file.
        const bool isTaken = shown && (shown->isOpening() || shown->document().isModified());
        if (!isTaken) {
            window = shown;
            if (window && journals_)
                journals_->giveUp(window);
        }
        if (!window) {
            auto configuration = isTaken ? std::make_shared<DocumentConfiguration>()
                                         : std::make_shared<DocumentConfiguration>(*recovered.path);
            window = addWindow(std::make_shared<JSONDocument>(std::move(configuration)));
        }
        if (!isTaken)
            window->document().configuration().setFileState(recovered.state);
    } else {
        window = addWindow(std::make_shared<JSONDocument>());
    }
    hasOpened_ = true;
    window->document().applyUnsaved(std::move(recovered.content), recovered.mode);
    if (journals_)
        journals_->follow(*window, recovered);
    window->showDocument();
    window->show();
    closeUntouched(*window);
    return *window;
}

/// The empty document that the program began with is not what the user came for.
void DocumentController::closeUntouched(const EditorView& newcomer) {
    for (EditorView* window : std::vector(windows_)) {
        const JSONDocument& document = window->document();
        const bool isUntouched = window != &newcomer && !window->isOpening() && !document.isModified() &&
                                 !document.configuration().fileLocation() && document.revision() == 0 &&
                                 !window->undoManager().canUndo() && !window->undoManager().canRedo();
        if (isUntouched)
            window->close();
    }
}

void DocumentController::tell(QWidget* window, const QString& message, const QString& details) {
    alert(window, message, details);
}

} // namespace quelm
