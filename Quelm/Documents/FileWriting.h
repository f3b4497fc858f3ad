#pragma once

#include "Quelm/Documents/FileError.h"
#include "TextCore/SharedText.h"

#include <QString>

#include <expected>
#include <functional>
#include <string_view>

namespace quelm {

/// Writes the bytes as the whole file: the file is replaced at once when all of them are on disk, and stays as it was
/// when anything fails. Blocks; for any thread.
std::expected<void, FileError> writeFile(const QString& path, const SharedText& bytes);

/// Takes a piece of a file's bytes, which is valid during the call; returns whether it wants more.
using TakeBytes = std::function<bool(std::string_view)>;

/// The same for bytes that are made while they are written, so that they need not be in memory whole. `produce` is
/// called once, unless the file cannot be begun, and gives the bytes in order until no more are wanted; it returns
/// whether those were all. The file stays as it was when they were not, or when `produce` throws. Returns whether the
/// file was written.
std::expected<bool, FileError> writeFileInPieces(const QString& path,
                                                 const std::function<bool(const TakeBytes& take)>& produce);

} // namespace quelm
