#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/DocumentJournals.h"
#include "Quelm/Recovery/LeftBehind.h"

#include <QDialog>

#include <algorithm>
#include <utility>

namespace quelm {

namespace {

/// What it asks or tells must not go with the window.
bool hasDialog(const EditorView& window) {
    return std::ranges::any_of(window.findChildren<QDialog*>(Qt::FindDirectChildrenOnly), &QWidget::isVisible);
}

} // namespace

void DocumentController::keepJournals(const QString& folder) {
    journals_ = std::make_unique<DocumentJournals>(folder);
    connect(journals_.get(), &DocumentJournals::didFail, this, [this](const QString& message) {
        alert(nullptr, tr("Los cambios sin guardar no se podrían recuperar si Quelm se cerrara inesperadamente."),
              message);
    });
}

/// A window for the file of what was recovered: the one that has it already, or a new one. What the user has edited
/// meanwhile stays: what is recovered becomes a document without a file then.
EditorView& DocumentController::windowForRecovered(const RecoveredDocument& recovered) {
    EditorView* shown = recovered.path ? windowOf(*recovered.path) : nullptr;
    if (shown)
        shown->finishEditing();
    const bool isTaken = shown && shown->document().isModified();
    if (!recovered.path || isTaken)
        return *addWindow(std::make_shared<JSONDocument>());
    if (!shown)
        shown = addWindow(std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(*recovered.path)));
    // What is being read for it is the file without the changes.
    openings_.erase(shown);
    reopened_.erase(shown);
    cancelReverting(*shown);
    outsideChanges_.follower(*shown).cancelReload();
    if (journals_)
        journals_->giveUp(shown);
    shown->document().configuration().setFileState(recovered.state);
    return *shown;
}

EditorView& DocumentController::openRecovered(RecoveredDocument recovered) {
    EditorView* window = &windowForRecovered(recovered);
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
                                 !window->undoManager().canUndo() && !window->undoManager().canRedo() &&
                                 !hasDialog(*window);
        if (isUntouched)
            window->close();
    }
}

void DocumentController::tell(QWidget* window, const QString& message, const QString& details) {
    alert(window, message, details);
}

} // namespace quelm
