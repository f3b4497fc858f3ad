#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <cstdint>
#include <expected>

namespace quelm {

/// Copies `count` bytes from where the one descriptor stands to where the other does, and returns their checksum. EIO
/// when there are fewer.
std::expected<ContentChecksum, SystemError> copyBytes(int from, int to, std::int64_t count, SystemCalls& calls);

/// Sets where the next bytes are read or written, from the beginning of the file.
std::expected<void, SystemError> moveTo(int descriptor, std::int64_t offset, SystemCalls& calls);

} // namespace quelm
