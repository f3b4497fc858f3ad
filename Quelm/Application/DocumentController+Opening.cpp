#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/DocumentJournals.h"
#include "Quelm/Application/FileDialogs.h"
#include "Quelm/Application/RecentFiles.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Documents/SameFile.h"
#include "Quelm/Foundation/VisibleText.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace quelm {

namespace {

/// How long a window waits for its document before it shows itself without.
constexpr std::chrono::milliseconds patience{200};

} // namespace

void DocumentController::newDocument() {
    EditorView* window = addWindow(std::make_shared<JSONDocument>());
    hasOpened_ = true;
    if (journals_)
        journals_->follow(*window);
    window->showDocument();
    window->show();
}

EditorView* DocumentController::windowOf(const QString& path) const {
    const auto found = std::ranges::find_if(windows_, [&](const EditorView* window) {
        const auto& location = window->document().configuration().fileLocation();
        return location && leadToSameFile(*location, path);
    });
    return found == windows_.end() ? nullptr : *found;
}

void DocumentController::open(const QString& path) {
    if (EditorView* shown = windowOf(path)) {
        bringForward(*shown);
        return;
    }

    if (path.isEmpty()) {
        hasFailed_ = true;
        alert(nullptr, tr("No se pudo abrir el archivo."), tr("El nombre está vacío."));
        return;
    }
    startOpening(QFileInfo(path).absoluteFilePath());
}

EditorView* DocumentController::startOpening(const QString& location) {
    // The window is made while the file is read, and read before it is shown as a rule.
    EditorView* window = addWindow(std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(location)));
    const auto progress = std::make_shared<WorkProgress>();
    window->noteOpeningStarted(progress);
    openings_[window] = startInBackground(
        window,
        [location, progress](std::stop_token stop) {
            return loadDocument(location, std::move(stop), progress.get());
        },
        [this, window, location](std::expected<LoadedDocument, FileError> loaded) {
            finishOpening(window, location, std::move(loaded));
        });
    QTimer::singleShot(patience, window, [window] { window->show(); });
    return window;
}

void DocumentController::open(const QStringList& paths) {
    openInTurns(paths, Origin::user);
}

void DocumentController::reopen(const QStringList& paths) {
    if (paths.isEmpty())
        return newDocument();
    openInTurns(paths, Origin::session);
}

void DocumentController::openInTurns(const QStringList& paths, Origin origin) {
    const bool isAtWork = !pendingOpenings_.empty();
    for (const QString& path : paths)
        pendingOpenings_.push_back({path, origin});
    if (!isAtWork)
        openNext();
}

/// In a turn of the event loop each, so that the first window does not wait for the others. Nothing when the user has
/// quit meanwhile.
void DocumentController::openNext() {
    if (pendingOpenings_.empty())
        return;
    const auto [path, origin] = pendingOpenings_.front();
    pendingOpenings_.pop_front();
    if (origin == Origin::user)
        open(path);
    else if (!windowOf(path))
        reopened_.insert(startOpening(path));
    if (!pendingOpenings_.empty())
        QTimer::singleShot(0, this, &DocumentController::openNext);
}

void DocumentController::finishOpening(EditorView* window, const QString& path,
                                       std::expected<LoadedDocument, FileError> loaded) {
    openings_.erase(window);
    if (!loaded)
        return reportOpening(window, path, loaded.error());
    reopened_.erase(window);
    hasOpened_ = true;
    window->document().configuration().setFileState(loaded->state);
    window->document().apply(std::move(loaded->content));
    if (journals_)
        journals_->follow(*window);
    window->showDocument();
    window->show();
    RecentFiles::note(path);
    // Of what happened to the file while it was read, nothing could follow yet.
    outsideChanges_.follower(*window).resume();
}

void DocumentController::reportOpening(EditorView* window, const QString& path, const FileError& error) {
    const bool isReopened = reopened_.contains(window);
    if (error.isAbsence)
        RecentFiles::remove(path);
    if (!error.isCancellation && !isReopened) {
        hasFailed_ = true;
        const QString name = visibleCharacters(window->document().configuration().displayName());
        alert(nullptr, tr("No se pudo abrir «%1».").arg(name), error.message);
    }
    const bool isLast = windows_.size() == 1 && pendingOpenings_.empty();
    if (isReopened && isLast)
        newDocument();
    delete window;
}

void DocumentController::showOpenDialog(EditorView& window) {
    QFileDialog* dialog = makeOpenDialog(window);
    if (const auto& location = window.document().configuration().fileLocation())
        dialog->setDirectory(QFileInfo(*location).absolutePath());
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) { open(paths); });
    dialog->open();
}

} // namespace quelm
