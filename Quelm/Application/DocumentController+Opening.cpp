#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/FileDialogs.h"
#include "Quelm/Application/RecentFiles.h"
#include "Quelm/Documents/DocumentLoading.h"

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
    window->showDocument();
    window->show();
}

EditorView* DocumentController::windowOf(const QString& path) const {
    const QFileInfo file(path);
    const auto found = std::ranges::find_if(windows_, [&](const EditorView* window) {
        const auto& location = window->document().configuration().fileLocation();
        return location && QFileInfo(*location) == file;
    });
    return found == windows_.end() ? nullptr : *found;
}

void DocumentController::open(const QString& path) {
    if (EditorView* shown = windowOf(path)) {
        bringForward(*shown);
        return;
    }

    // The window is made while the file is read, and read before it is shown as a rule.
    const QString location = QFileInfo(path).absoluteFilePath();
    EditorView* window = addWindow(std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(location)));
    openings_[window] = startInBackground(
        window, [location](std::stop_token stop) { return loadDocument(location, std::move(stop)); },
        [this, window, location](std::expected<JSONContent, FileError> content) {
            finishOpening(window, location, std::move(content));
        });
    QTimer::singleShot(patience, window, [window] { window->show(); });
}

void DocumentController::finishOpening(EditorView* window, const QString& path,
                                       std::expected<JSONContent, FileError> content) {
    openings_.erase(window);
    if (!content) {
        hasFailed_ = true;
        RecentFiles::remove(path);
        const QString name = window->document().configuration().displayName();
        alert(nullptr, tr("No se pudo abrir «%1».").arg(name), content.error().message);
        delete window;
        return;
    }
    hasOpened_ = true;
    window->document().apply(*std::move(content));
    window->showDocument();
    window->show();
    RecentFiles::note(path);
}

void DocumentController::showOpenDialog(EditorView& window) {
    QFileDialog* dialog = makeOpenDialog(window);
    if (const auto& location = window.document().configuration().fileLocation())
        dialog->setDirectory(QFileInfo(*location).absolutePath());
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) {
        for (const QString& path : paths)
            open(path);
    });
    dialog->open();
}

} // namespace quelm
