#pragma once

#include "Quelm/Foundation/Clock.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <chrono>
#include <map>
#include <memory>

class QFileSystemWatcher;

namespace quelm {

/// Tells when files may have changed on the device. Their folders are watched, since a watch of a file stays with what
/// is replaced; the files too, for what is written in place; the folders' own folders, in which they may be renamed;
/// and where symbolic links lead. Of a folder that is not there the nearest one above is watched.
///
/// It is a hint: a system that has no watches left (or none at all) is no error, and a network's folder may change
/// without a word. For the main thread.
class FileWatch : public QObject {
    Q_OBJECT

public:
    /// The clock must outlive the watch.
    explicit FileWatch(Clock& clock = Clock::system(), QObject* parent = nullptr);
    ~FileWatch() override;

    /// Watches an absolute path, whether it is there or not, once more: as often as it was added it is to be removed.
    void add(const QString& path);
    void remove(const QString& path);

    /// Looks anew at where the paths lead: for when nothing may have been told.
    void refresh();

    /// What is watched at this moment: for tests.
    QStringList watchedPaths() const;

    /// How long nothing must have happened before it is told, and how long that may take.
    static constexpr std::chrono::milliseconds pause{200};
    static constexpr std::chrono::milliseconds longestDelay{1000};

Q_SIGNALS:
    void mayHaveChanged(const QString& path);

private:
    struct Watched {
        int count = 0;
        QStringList places;
        bool hasChanged = false;
    };

    void noteChange(const QString& place);
    void announce();
    void setWatches(const QSet<QString>& stale);

    Clock& clock_;
    /// Null where the system has none to give.
    std::unique_ptr<QFileSystemWatcher> watcher_;
    std::map<QString, Watched> files_;
    DelayedCall pauseCall_;
    DelayedCall latestCall_;
};

} // namespace quelm
