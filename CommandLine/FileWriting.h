#pragma once

#include "CommandLine/SystemError.h"

#include <expected>
#include <functional>
#include <string>
#include <string_view>

namespace quelm {

/// Makes the file at `path` hold exactly these bytes, or leaves it as it was: they are written to a new file
/// in the same folder, flushed to the device, and the new file takes the old one's name. Owner (where the
/// system allows it) and permissions of the old file are kept; its hard links and extended attributes are
/// not. A symbolic link is followed, and stays. A file that the user may not write is not replaced.
///
/// What is no regular file (a pipe, a device) is written to as it is.
std::expected<void, SystemError> writeFile(const std::string& path, std::string_view bytes);

/// Writes bytes to a descriptor, as many as there are.
using WriteBytes = std::function<std::expected<void, SystemError>(int descriptor)>;

/// The same for bytes that are made while they are written. When `write` fails, the file is left as it was.
std::expected<void, SystemError> writeFile(const std::string& path, const WriteBytes& write);

} // namespace quelm
