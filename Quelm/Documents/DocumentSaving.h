#pragma once

#include "FileCore/FileSaving.h"
#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/FileError.h"

#include <QString>

#include <expected>

namespace quelm {

/// Writes what a document held at one moment as the whole file, or tells why it cannot, and that nothing was lost.
/// Blocks; for any thread.
std::expected<SavedFile, FileError> saveDocument(const QString& path, const JSONContent& snapshot,
                                                 SaveOptions options = {});

} // namespace quelm
