#include "Quelm/Application/DocumentController.h"

#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/SettingsView.h"
#include "Quelm/EditorWindow/Alert.h"

#include <QMessageBox>

#include <utility>

// Its sources: windows here, "+Opening", "+Saving" with reverting, "+Closing".

namespace quelm {

DocumentController::DocumentController(std::function<void(EditorView&)> prepareWindow, QObject* parent)
    : QObject(parent), prepareWindow_(std::move(prepareWindow)) {
    savingThread_.setMaxThreadCount(1);
}

DocumentController::~DocumentController() {
    const std::vector<EditorView*> windows = std::exchange(windows_, {});
    for (EditorView* window : windows) {
        window->disconnect(this);
        delete window;
    }
    delete settings_;
}

EditorView* DocumentController::addWindow(std::shared_ptr<JSONDocument> document) {
    auto* window = new EditorView(std::move(document));
    window->setAttribute(Qt::WA_DeleteOnClose);
    prepareWindow_(*window);
    window->installEventFilter(this);
    windows_.push_back(window);
    // Queued: by then the next of several exports has begun.
    connect(
        &window->model(), &EditorModel::exportingFinished, window,
        [this, window](bool succeeded) { finishExporting(*window, succeeded); }, Qt::QueuedConnection);
    connect(window, &QObject::destroyed, this, [this, window] { removeWindow(window); });
    Q_EMIT madeWindow(*window);
    return window;
}

void DocumentController::removeWindow(EditorView* window) {
    openings_.erase(window);
    revertings_.erase(window);
    questions_.erase(window);
    closingWhenSaved_.erase(window);
    closingWhenExported_.erase(window);
    discarding_.erase(window);
    savings_.erase(window);
    std::erase(windows_, window);
    if (windows_.empty() && settings_)
        settings_->close();
    announceIdle();
}

SettingsView* DocumentController::settings() const {
    return settings_;
}

void DocumentController::showSettings() {
    if (!settings_) {
        // Without a parent: the keys of a document's window must not act from here.
        settings_ = new SettingsView;
        settings_->setAttribute(Qt::WA_DeleteOnClose);
        Q_EMIT madeWindow(*settings_);
    }
    bringForward(*settings_);
}

void DocumentController::alert(QWidget* parent, const QString& message, const QString& details) {
    ++alertCount_;
    connect(showAlert(parent, message, details), &QObject::destroyed, this, [this] {
        --alertCount_;
        announceIdle();
    });
}

void DocumentController::announceIdle() {
    if (isIdle())
        Q_EMIT becameIdle();
}

} // namespace quelm
