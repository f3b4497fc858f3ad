#include "Quelm/Application/FileTitles.h"

#include "Quelm/Foundation/Fonts.h"

#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QHash>

namespace quelm {

namespace {

constexpr double widestTitle = 400; // in logical points

QString folderOf(const QString& path) {
    const QString folder = QFileInfo(path).path();
    const QString home = QDir::homePath();
    if (folder == home)
        return QStringLiteral("~");
    return folder.startsWith(home + u'/') ? u'~' + folder.sliced(home.size()) : folder;
}

} // namespace

QStringList tellingFolders(const QStringList& paths) {
    QHash<QString, int> counts;
    for (const QString& path : paths)
        ++counts[QFileInfo(path).fileName()];
    QStringList folders;
    for (const QString& path : paths) {
        const bool isAlone = counts.value(QFileInfo(path).fileName()) == 1;
        folders += isAlone ? QString() : QDir::toNativeSeparators(folderOf(path));
    }
    return folders;
}

QStringList fileTitles(const QStringList& paths) {
    const QStringList folders = tellingFolders(paths);
    QStringList titles;
    for (qsizetype index = 0; index < paths.size(); ++index) {
        const QString name = QFileInfo(paths[index]).fileName();
        titles += folders[index].isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, folders[index]);
    }
    return titles;
}

QString menuTitle(const QString& text, const QFontMetrics& metrics) {
    return metrics.elidedText(text, Qt::ElideMiddle, scaledPixels(widestTitle)).replace(u'&', QStringLiteral("&&"));
}

} // namespace quelm
