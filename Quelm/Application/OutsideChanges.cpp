#include "Quelm/Application/OutsideChanges.h"

#include "Quelm/EditorWindow/EditorView.h"

#include <QEvent>
#include <QGuiApplication>

#include <utility>

namespace quelm {

OutsideChanges::OutsideChanges(Owner owner, Clock& clock, QObject* parent)
    : QObject(parent), owner_(std::move(owner)), clock_(clock), watch_(clock) {
    connect(&watch_, &FileWatch::mayHaveChanged, this, &OutsideChanges::check);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            checkAll();
    });
}

OutsideChanges::~OutsideChanges() = default;

void OutsideChanges::add(EditorView& window) {
    auto* follower = new FileFollower(window,
                                      {.isHeld = [this, &window] { return owner_.isHeld(window); },
                                       .saveAs = [this, &window] { owner_.saveAs(window); }},
                                      clock_);
    windows_.emplace(&window, Followed{follower, std::nullopt});
    updatePath(window);
    window.installEventFilter(this);
    connect(&window.document().configuration(), &DocumentConfiguration::fileLocationChanged, follower,
            [this, &window] { updatePath(window); });
    connect(follower, &QObject::destroyed, this, [this, &window] { remove(&window); });
}

FileFollower& OutsideChanges::follower(const EditorView& window) const {
    return *windows_.at(&window).follower;
}

void OutsideChanges::updatePath(const EditorView& window) {
    Followed& followed = windows_.at(&window);
    const std::optional<QString> path = window.document().configuration().fileLocation();
    if (followed.path == path)
        return;
    if (followed.path)
        watch_.remove(*followed.path);
    followed.path = path;
    if (path)
        watch_.add(*path);
}

void OutsideChanges::remove(const EditorView* window) {
    const auto found = windows_.find(window);
    if (found->second.path)
        watch_.remove(*found->second.path);
    windows_.erase(found);
}

void OutsideChanges::check(const QString& path) {
    for (const auto& [window, followed] : windows_) {
        if (followed.path == path)
            followed.follower->check();
    }
}

void OutsideChanges::checkAll() {
    // Nobody may have told what became of folders that are not there, or not watched.
    watch_.refresh();
    for (const auto& [window, followed] : windows_)
        followed.follower->check();
}

bool OutsideChanges::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        if (const auto found = windows_.find(static_cast<EditorView*>(watched)); found != windows_.end())
            found->second.follower->check();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quelm
