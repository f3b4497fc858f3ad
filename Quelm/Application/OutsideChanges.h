#pragma once

#include "Quelm/Application/FileFollower.h"
#include "Quelm/Documents/FileWatch.h"
#include "Quelm/Foundation/Clock.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <unordered_map>

namespace quelm {

class EditorView;

/// Has the windows follow their files: when those may have changed by what the system tells, and when a window, or the
/// program, becomes active again. For the main thread.
class OutsideChanges : public QObject {
    Q_OBJECT

public:
    /// See `FileFollower::Owner`.
    struct Owner {
        std::function<bool(EditorView&)> isHeld;
        std::function<void(EditorView&)> saveAs;
    };
    /// The clock must outlive it.
    explicit OutsideChanges(Owner owner, Clock& clock = Clock::system(), QObject* parent = nullptr);
    ~OutsideChanges() override;

    /// From now on, until the window goes, which it must before this. Its document may have no file, or get another
    /// one.
    void add(EditorView& window);

    /// Of a window that was added and lives.
    FileFollower& follower(const EditorView& window) const;

    const FileWatch& watch() const { return watch_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Followed {
        FileFollower* follower = nullptr;
        std::optional<QString> path;
    };

    void updatePath(const EditorView& window);
    void remove(const EditorView* window);
    void check(const QString& path);
    void checkAll();

    const Owner owner_;
    Clock& clock_;
    FileWatch watch_;
    std::unordered_map<const EditorView*, Followed> windows_;
};

} // namespace quelm
