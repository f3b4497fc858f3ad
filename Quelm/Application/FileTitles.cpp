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

QStringList fileTitles(const QStringList& paths) {
    QHash<QString, int> counts;
    for (const QString& path : paths)
        ++counts[QFileInfo(path).fileName()];
    QStringList titles;
    for (const QString& path : paths) {
        const QString name = QFileInfo(path).fileName();
        const bool isAlone = counts.value(name) == 1;
        titles += isAlone ? name : QStringLiteral("%1 (%2)").arg(name, QDir::toNativeSeparators(folderOf(path)));
    }
    return titles;
}

QString menuTitle(const QString& text, const QFontMetrics& metrics) {
    return metrics.elidedText(text, Qt::ElideMiddle, scaledPixels(widestTitle)).replace(u'&', QStringLiteral("&&"));
}

} // namespace quelm
