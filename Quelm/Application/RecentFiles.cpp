#include "Quelm/Application/RecentFiles.h"

#include "Quelm/Foundation/Preferences.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

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
    const auto store = Preferences::openStore();
    const QStringList before = store->value(key).toStringList();
    QStringList paths = before;
    paths.removeAll(absolute(path));
    paths.prepend(absolute(path));
    paths = paths.mid(0, maximumCount);
    // What is not changed is not written.
    if (paths != before)
        store->setValue(key, paths);
}

void remove(const QString& path) {
    const auto store = Preferences::openStore();
    QStringList paths = store->value(key).toStringList();
    if (paths.removeAll(absolute(path)) > 0)
        store->setValue(key, paths);
}

void clear() {
    Preferences::openStore()->remove(key);
}

} // namespace quelm::RecentFiles
