#pragma once

#include <QStringList>

class QFontMetrics;

namespace quelm {

/// The names of files as they are told apart in a menu, in the order of their absolute paths: without their folders,
/// and with them where names are alike.
QStringList fileTitles(const QStringList& paths);

/// The folder of each file whose name another one has too, shortened where it is below the home folder; empty for the
/// others.
QStringList tellingFolders(const QStringList& paths);

/// A text as a menu shows it: no wider than a menu should be, and with no letter underlined.
QString menuTitle(const QString& text, const QFontMetrics& metrics);

} // namespace quelm
