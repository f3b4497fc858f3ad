#include "Quelm/Application/DocumentController.h"

#include "Quelm/Application/BringForward.h"
#include "Quelm/Application/DocumentJournals.h"
#include "Quelm/Application/FileDropping.h"
#include "Quelm/Application/SettingsView.h"
#include "Quelm/Application/WindowPlaces.h"
#include "Quelm/Application/WindowTitles.h"
#include "Quelm/EditorWindow/Alert.h"
#include "Quelm/Recovery/RecoveryFolder.h"

#include <QApplication>
#include <QFileDialog>
#include <QFile>
#include <QMessageBox>

#include <utility>

// Its sources: windows here, "+Opening", "+Recovery", "+Saving", "+Reverting", "+Closing" of one window, "+Quitting".

namespace quelm {

namespace {

/// More would only take the disk from each other.
constexpr int mostSavesAtOnce = 4;

} // namespace

DocumentController::DocumentController(std::function<void(EditorView&)> prepareWindow, QObject* parent)
    : QObject(parent), prepareWindow_(std::move(prepareWindow)),
      outsideChanges_({.isHeld = [this](EditorView& window) { return isInHand(window); },
                       .saveAs = [this](EditorView& window) { saveAs(window); }}) {
    savingThreads_.setMaxThreadCount(mostSavesAtOnce);
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
    window->model().setBackupFolder(QFile::encodeName(recoveryFolder()).toStdString());
    placeWindow(*window);
    new FileDropping(*window, [this](const QStringList& paths) { open(paths); });
    window->installEventFilter(this);
    windows_.push_back(window);
    outsideChanges_.add(*window);
    connect(&outsideChanges_.follower(*window), &FileFollower::didPartFromFile, this, [this, window] {
        if (journals_)
            journals_->standAlone(*window);
    });
    connect(&outsideChanges_.follower(*window), &FileFollower::didReload, this, [this, window] {
        if (dismissSettledQuestion(*window))
            goOnClosing(*window);
    });
    // Queued: by then the next of several exports has begun.
    connect(
        &window->model(), &EditorModel::exportingFinished, window,
        [this, window](bool succeeded) { finishExporting(*window, succeeded); }, Qt::QueuedConnection);
    connect(window, &EditorView::openingCancelled, window, &QWidget::close);
    connect(&window->model(), &EditorModel::savingCancelled, this, [this, window] {
        if (const auto saving = savings_.find(window); saving != savings_.end())
            saving->second.stop.request_stop();
    });
    connect(&window->document().configuration(), &DocumentConfiguration::fileLocationChanged, this,
            [this] { tellApart(windows_); });
    connect(window, &QObject::destroyed, this, [this, window] { removeWindow(window); });
    tellApart(windows_);
    Q_EMIT madeWindow(*window);
    return window;
}

/// Where the window of the file was, or as large as the one that the user has before them, or had last.
void DocumentController::placeWindow(EditorView& window) const {
    const auto& location = window.document().configuration().fileLocation();
    const std::optional<WindowPlace> own = location ? WindowPlaces::of(*location) : std::nullopt;
    if (own)
        return own->apply(window);
    const auto* active = qobject_cast<EditorView*>(QApplication::activeWindow());
    if (const auto place = active ? WindowPlace::of(*active) : WindowPlaces::last())
        place->applySize(window);
}

void DocumentController::removeWindow(EditorView* window) {
    if (journals_)
        journals_->giveUp(window);
    openings_.erase(window);
    reopened_.erase(window);
    revertings_.erase(window);
    questions_.erase(window);
    closingWhenSaved_.erase(window);
    closingWhenExported_.erase(window);
    discarding_.erase(window);
    savings_.erase(window);
    saveDialogs_.erase(window);
    std::erase(windows_, window);
    tellApart(windows_);
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
