#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/FileError.h"

#include <QString>

#include <expected>
#include <stop_token>

namespace quelm {

/// A file's content, read and parsed, or why it cannot be opened. Invalid JSON can. Blocks; for any thread. When `stop`
/// is requested whatever comes back is to be dropped.
std::expected<JSONContent, FileError> loadDocument(const QString& path, std::stop_token stop = {});

} // namespace quelm
