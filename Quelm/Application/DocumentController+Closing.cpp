#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/ClosingQuestion.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowPlaces.h"

#include <QCloseEvent>
#include <QMessageBox>

#include <algorithm>

namespace quelm {

bool DocumentController::eventFilter(QObject* watched, QEvent* event) {
    const auto found = std::ranges::find(windows_, watched);
    if (event->type() != QEvent::Close || found == windows_.end())
        return QObject::eventFilter(watched, event);
    EditorView& window = **found;
    window.finishEditing();
    if (isToBeAskedAbout(window)) {
        event->ignore();
        askBeforeClosing(window);
        return true;
    }
    if (window.model().isExporting()) {
        event->ignore();
        closingWhenExported_.insert(&window);
        return true;
    }
    if (window.isVisible())
        WindowPlaces::note(window.document().configuration().fileLocation(), WindowPlace::of(window));
    return QObject::eventFilter(watched, event);
}

bool DocumentController::isToBeAskedAbout(EditorView& window) const {
    const auto discarded = discarding_.find(&window);
    const bool isDiscarded =
        discarded != discarding_.end() && discarded->second == window.document().stateToken().current();
    // What is being written may be a state that was left since: then the file will not be what the window shows.
    const bool isSaved =
        !window.document().isModified() && (!savings_.contains(&window) || isBeingSavedAsItIs(window));
    return !isSaved && !isDiscarded;
}

bool DocumentController::isBeingSavedAsItIs(EditorView& window) const {
    const auto saving = savings_.find(&window);
    return saving != savings_.end() && saving->second.token == window.document().stateToken().current();
}

void DocumentController::askBeforeClosing(EditorView& window) {
    if (isBeingSavedAsItIs(window)) {
        closingWhenSaved_.insert(&window);
        return;
    }
    QPointer<QMessageBox>& question = questions_[&window];
    if (question)
        return question->raise();
    bringForward(window);
    question = quelm::askBeforeClosing(window, window.document().configuration().displayName(),
                                       {.save = [this, &window] { saveAndClose(window); },
                                        .discard = [this, &window] { discardAndClose(window); },
                                        .cancel = [this, &window] { cancelClosing(window); }});
}

/// Takes the question about a window away when there are no changes to ask about any more. Returns whether it did.
bool DocumentController::dismissSettledQuestion(EditorView& window) {
    const auto question = questions_.find(&window);
    if (question == questions_.end() || !question->second || isToBeAskedAbout(window))
        return false;
    question->second->deleteLater();
    return true;
}

void DocumentController::saveAndClose(EditorView& window) {
    cancelReverting(window);
    closingWhenSaved_.insert(&window);
    save(window);
}

void DocumentController::discardAndClose(EditorView& window) {
    discarding_[&window] = window.document().stateToken().current();
    goOnClosing(window);
}

void DocumentController::goOnClosing(EditorView& window) {
    if (quitting_ != Quitting::no)
        continueQuitting();
    else
        window.close();
}

void DocumentController::cancelClosing(EditorView& window) {
    closingWhenSaved_.erase(&window);
    closingWhenExported_.erase(&window);
    discarding_.erase(&window);
    stopQuitting();
}

void DocumentController::finishExporting(EditorView& window, bool succeeded) {
    if (!succeeded)
        cancelClosing(window);
    else if (closingWhenExported_.erase(&window) > 0 || quitting_ != Quitting::no)
        goOnClosing(window);
}

} // namespace quelm
