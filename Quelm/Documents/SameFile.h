#pragma once

#include <QString>

namespace quelm {

/// Whether two paths lead to the same file: by other spellings, symbolic links, or other names that the file has. Paths
/// with nothing at them are the same when they name the same place.
bool leadToSameFile(const QString& path, const QString& other);

} // namespace quelm
