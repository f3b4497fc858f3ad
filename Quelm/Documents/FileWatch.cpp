#include "Quelm/Documents/FileWatch.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#include <unistd.h>
#endif

#include <utility>

namespace quelm {

namespace {

/// As many as the system itself follows.
constexpr int longestLinkChain = 40;

/// Without native watches Qt lists whole folders every second.
bool hasNativeWatches() {
#ifdef Q_OS_LINUX
    const int instance = inotify_init1(IN_CLOEXEC);
    if (instance < 0)
        return false;
    ::close(instance);
#endif
    return true;
}

QString folderOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

QString nearestFolder(QString folder) {
    while (!QFileInfo(folder).isDir() && folder != folderOf(folder))
        folder = folderOf(folder);
    return folder;
}

void addFolders(QStringList& places, const QString& path) {
    const QString folder = nearestFolder(folderOf(path));
    places << folder << folderOf(folder);
}

/// Everything whose change may change what the path leads to.
QStringList placesOf(const QString& path) {
    QStringList places;
    QFileInfo file(path);
    addFolders(places, file.absoluteFilePath());
    for (int links = 0; file.isSymLink() && links < longestLinkChain; ++links) {
        file = QFileInfo(file.symLinkTarget());
        addFolders(places, file.absoluteFilePath());
    }
    // A pipe or a device would tell of every byte that goes through it.
    if (file.isFile())
        places << file.absoluteFilePath();
    places.removeDuplicates();
    return places;
}

QSet<QString> setOf(const QStringList& places) {
    return {places.begin(), places.end()};
}

} // namespace

FileWatch::FileWatch(Clock& clock, QObject* parent) : QObject(parent), clock_(clock) {
    if (!hasNativeWatches())
        return;
    watcher_ = std::make_unique<QFileSystemWatcher>();
    connect(watcher_.get(), &QFileSystemWatcher::fileChanged, this, &FileWatch::noteChange);
    connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, this, &FileWatch::noteChange);
}

FileWatch::~FileWatch() = default;

void FileWatch::add(const QString& path) {
    Watched& watched = files_[path];
    if (++watched.count > 1)
        return;
    watched.places = placesOf(path);
    setWatches({});
}

void FileWatch::remove(const QString& path) {
    const auto found = files_.find(path);
    if (found == files_.end() || --found->second.count > 0)
        return;
    files_.erase(found);
    setWatches({});
}

void FileWatch::refresh() {
    for (auto& [path, watched] : files_)
        watched.places = placesOf(path);
    setWatches({});
}

QStringList FileWatch::watchedPaths() const {
    return watcher_ ? watcher_->files() + watcher_->directories() : QStringList();
}

void FileWatch::noteChange(const QString& place) {
    bool isWanted = false;
    for (auto& [path, watched] : files_) {
        if (watched.places.contains(place))
            isWanted = watched.hasChanged = true;
    }
    if (!isWanted)
        return;
    pauseCall_ = clock_.callAfter(pause, [this] { announce(); });
    // A folder in which something happens all the time must not keep it from being told.
    if (!latestCall_)
        latestCall_ = clock_.callAfter(longestDelay, [this] { announce(); });
}

void FileWatch::announce() {
    pauseCall_.reset();
    latestCall_.reset();
    QSet<QString> stale;
    for (auto& [path, watched] : files_) {
        if (!std::exchange(watched.hasChanged, false))
            continue;
        stale.unite(setOf(watched.places));
        watched.places = placesOf(path);
    }
    // With a watch goes what it has not told yet, also of files that nothing was heard of.
    QStringList changed;
    for (const auto& [path, watched] : files_) {
        if (setOf(watched.places).intersects(stale))
            changed << path;
    }
    // What happens from now on is told again, what has happened until now is found by whoever is told.
    setWatches(stale);
    for (const QString& path : changed)
        Q_EMIT mayHaveChanged(path);
}

/// A watch that is stale, since it stays with the file or folder that had the name when it was set, is set anew.
void FileWatch::setWatches(const QSet<QString>& stale) {
    if (!watcher_)
        return;
    QSet<QString> wanted;
    for (const auto& [path, watched] : files_)
        wanted.unite(setOf(watched.places));
    const QSet<QString> current = setOf(watchedPaths());
    const QStringList obsolete = (current - (wanted - stale)).values();
    if (!obsolete.isEmpty())
        watcher_->removePaths(obsolete);
    const QStringList missing = (wanted - (current - stale)).values();
    // Those that the system refuses are done without.
    if (!missing.isEmpty())
        watcher_->addPaths(missing);
}

} // namespace quelm
