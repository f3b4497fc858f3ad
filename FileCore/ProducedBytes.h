#pragma once

#include "FileCore/FileSaving.h"

#include <expected>

namespace quelm {

/// Lets `produce` write its bytes to an open file; their checksum. Ends soon when `options.stop` is requested.
std::expected<ContentChecksum, SaveFailure> writeProduced(int file, const ProducePieces& produce,
                                                          const SaveOptions& options);

} // namespace quelm
