#pragma once

#include "Quelm/Documents/FileError.h"
#include "TextCore/SharedText.h"

#include <QString>

#include <expected>

namespace quelm {

/// Writes the bytes as the whole file: the file is replaced at once when all of them are on disk, and stays as it was
/// when anything fails. Blocks; for any thread.
std::expected<void, FileError> writeFile(const QString& path, const SharedText& bytes);

} // namespace quelm
