#pragma once

#include <QStringList>

namespace quelm {

/// The names for a sentence: "a", or "a" y "b", or "a", "b" y "c"; of many, the first few and how many more there are.
/// At least one.
QString quotedNames(const QStringList& names);

} // namespace quelm
