#include "Quelm/Application/RecentFiles.h"

#include "Quelm/Foundation/Preferences.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <utility>

namespace quelm::RecentFiles {

namespace {

constexpr QLatin1String key("recentFiles");

QString absolute(const QString& path) {
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

QStringList paths() {
    return Preferences::openStore()->value(key).toStringList().mid(0, maximumCount);
}

void note(const QString& path) {
    auto store = Preferences::openStore();
    const QStringList before = store->value(key).toStringList();
    QStringList paths = before;
    paths.removeAll(absolute(path));
    paths.prepend(absolute(path));
    paths = paths.mid(0, maximumCount);
    // What is not changed is not written.
    if (paths == before)
        return;
    store->setValue(key, paths);
    Preferences::writeInBackground(std::move(store));
}

void remove(const QString& path) {
    auto store = Preferences::openStore();
    QStringList paths = store->value(key).toStringList();
    if (paths.removeAll(absolute(path)) == 0)
        return;
    store->setValue(key, paths);
    Preferences::writeInBackground(std::move(store));
}

void clear() {
    auto store = Preferences::openStore();
    store->remove(key);
    Preferences::writeInBackground(std::move(store));
}

} // namespace quelm::RecentFiles
