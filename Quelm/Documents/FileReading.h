#pragma once

#include "Quelm/Documents/FileError.h"
#include "TextCore/SharedText.h"

#include <QString>

#include <expected>
#include <stop_token>

namespace quelm {

/// The bytes of a file, read once into padded memory of their own, so that nobody who changes or cuts the file later
/// can touch them. Blocks; for any thread. When `stop` is requested the bytes may end early.
std::expected<SharedText, FileError> readFile(const QString& path, std::stop_token stop = {});

} // namespace quelm
