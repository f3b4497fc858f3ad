#pragma once

#include <QString>
#include <QStringList>

/// The files that were opened or saved last, kept in the per-user store. For the main thread.
namespace quelm::RecentFiles {

inline constexpr qsizetype maximumCount = 10;

/// Absolute paths, the last one first.
QStringList paths();

/// The file comes first from now on. Its absolute path.
void note(const QString& path);
/// It could not be opened.
void remove(const QString& path);
void clear();

} // namespace quelm::RecentFiles
