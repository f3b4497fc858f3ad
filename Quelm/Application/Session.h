#pragma once

#include <QStringList>

/// The files that were open when the user quit, kept in the per-user store until the program starts again. For the main
/// thread.
namespace quelm::Session {

inline constexpr qsizetype maximumCount = 50;

/// Absolute paths, in the order of their windows; what was stored before goes.
void store(const QStringList& paths);

/// The paths, which are not kept any longer.
QStringList take();

} // namespace quelm::Session
