#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/ClosingQuestion.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/Session.h"
#include "Quelm/Application/WindowPlaces.h"
#include "Quelm/Application/WindowTitles.h"

#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <utility>

namespace quelm {

void DocumentController::quit() {
    if (quittingQuestion_)
        return quittingQuestion_->activateWindow();
    quitting_ = Quitting::asking;
    continueQuitting();
}

/// Asks about what is unsaved, waits for what is being saved or exported, and closes all windows when they are settled.
void DocumentController::continueQuitting() {
    for (EditorView* window : windows_)
        window->finishEditing();
    std::vector<EditorView*> unsettled = unsettledWindows();
    std::erase_if(unsettled, [this](EditorView* window) { return isBeingSavedAsItIs(*window); });
    if (quittingQuestion_ && !unsettled.empty())
        return;
    dismissQuittingQuestion();
    if (!unsettled.empty() && quitting_ == Quitting::saving)
        return saveAll(unsettled);
    if (unsettled.size() > 1)
        return askAboutAll(unsettled);
    if (!unsettled.empty()) {
        unsettled.front()->close();
        return;
    }
    const auto isAtWork = [this](EditorView* window) {
        return savings_.contains(window) || window->model().isExporting();
    };
    if (std::ranges::none_of(windows_, isAtWork))
        closeAll();
}

std::vector<EditorView*> DocumentController::unsettledWindows() const {
    std::vector<EditorView*> windows = windows_;
    std::erase_if(windows, [this](EditorView* window) { return !isToBeAskedAbout(*window); });
    return windows;
}

void DocumentController::askAboutAll(const std::vector<EditorView*>& windows) {
    // The one question takes the place of those about single windows.
    for (const auto& [window, question] : questions_)
        if (question)
            question->deleteLater();
    auto* active = qobject_cast<EditorView*>(QApplication::activeWindow());
    EditorView& window = std::ranges::find(windows, active) != windows.end() ? *active : *windows.front();
    bringForward(window);
    quittingQuestion_ = askBeforeQuitting(window, documentTitles(windows),
                                          {.save = [this] { saveAllAndQuit(); },
                                           .discard = [this] { discardAllAndQuit(); },
                                           .cancel = [this] { stopQuitting(); }});
}

/// Also when it has been answered, as it is about to go by itself then.
void DocumentController::dismissQuittingQuestion() {
    if (const QPointer<QMessageBox> question = std::exchange(quittingQuestion_, nullptr))
        question->deleteLater();
}

void DocumentController::saveAllAndQuit() {
    dismissQuittingQuestion();
    quitting_ = Quitting::saving;
    continueQuitting();
}

void DocumentController::discardAllAndQuit() {
    dismissQuittingQuestion();
    for (EditorView* window : unsettledWindows())
        discarding_[window] = window->document().stateToken().current();
    continueQuitting();
}

/// Files first, then the documents that still need one, a dialog at a time: what has failed by then asks for none.
void DocumentController::saveAll(const std::vector<EditorView*>& windows) {
    bool isSaving = false;
    for (EditorView* window : windows) {
        if (!window->document().configuration().fileLocation())
            continue;
        isSaving = true;
        saveAndClose(*window);
    }
    if (isSaving || !savings_.empty())
        return;
    bringForward(*windows.front());
    saveAndClose(*windows.front());
}

void DocumentController::stopQuitting() {
    if (std::exchange(quitting_, Quitting::no) == Quitting::no)
        return;
    closingWhenSaved_.clear();
    closingWhenExported_.clear();
    discarding_.clear();
    dismissQuittingQuestion();
}

void DocumentController::closeAll() {
    quitting_ = Quitting::no;
    Session::store(sessionFiles());
    pendingOpenings_.clear();
    for (EditorView* window : std::vector(windows_))
        window->close();
}

// What the next start shows again.

QStringList DocumentController::sessionFiles() const {
    QStringList paths;
    for (const EditorView* window : windows_)
        if (const auto& location = window->document().configuration().fileLocation())
            paths += *location;
    for (const PendingOpening& pending : pendingOpenings_)
        paths += QFileInfo(pending.path).absoluteFilePath();
    return paths;
}

void DocumentController::rememberSession() {
    // What has been typed into a field is a change only then.
    for (EditorView* window : windows_)
        window->finishEditing();
    QStringList paths = sessionFiles();
    for (EditorView* window : windows_) {
        const auto& location = window->document().configuration().fileLocation();
        if (window->isVisible())
            WindowPlaces::note(location, WindowPlace::of(*window));
        if (location && window->document().isModified())
            paths.removeAll(*location);
    }
    Session::store(paths);
}

} // namespace quelm
