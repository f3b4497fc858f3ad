#pragma once

#include "FileCore/SystemError.h"

#include <expected>
#include <functional>
#include <string>
#include <string_view>

namespace quelm {

/// Takes a piece of a file's bytes, valid during the call.
using WritePiece = std::function<std::expected<void, SystemError>(std::string_view piece)>;
/// Gives all the bytes in order, until one piece is not taken: that is its error too.
using ProduceBytes = std::function<std::expected<void, SystemError>(const WritePiece& write)>;

/// Makes the file at `path` hold exactly the bytes that are produced, or leaves it as it was, as `saveFile` does:
/// owner, permissions and extended attributes are kept as far as the system allows it, other hard links keep the old
/// file, a symbolic link is followed and stays. A file that the user may not write is not replaced.
///
/// What is no regular file (a pipe, a device) is written to as it is, and so is a file that has no name any more. EBUSY
/// when somebody else changes the file meanwhile.
std::expected<void, SystemError> writeFile(const std::string& path, const ProduceBytes& produce);

std::expected<void, SystemError> writeFile(const std::string& path, std::string_view bytes);

} // namespace quelm
