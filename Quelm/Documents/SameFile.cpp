#include "Quelm/Documents/SameFile.h"

#include "FileCore/FileStamp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace quelm {

bool leadToSameFile(const QString& path, const QString& other) {
    const auto place = [](const QString& name) { return QDir::cleanPath(QFileInfo(name).absoluteFilePath()); };
    if (place(path) == place(other))
        return true;
    const auto stamp = FileStamp::of(QFile::encodeName(path).toStdString());
    const auto otherStamp = FileStamp::of(QFile::encodeName(other).toStdString());
    return stamp && otherStamp && stamp->isSameFile(*otherStamp);
}

} // namespace quelm
