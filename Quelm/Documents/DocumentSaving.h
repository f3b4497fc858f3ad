#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/FileError.h"

#include <QString>

#include <expected>

namespace quelm {

/// Writes what a document held at one moment as the whole file, or tells why it cannot. Blocks; for any thread.
std::expected<void, FileError> saveDocument(const QString& path, const JSONContent& snapshot);

} // namespace quelm
