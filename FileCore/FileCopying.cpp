#include "FileCore/FileCopying.h"

#include "FileCore/FileDescriptor.h"
#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <unistd.h>
#include <vector>

namespace quelm {

std::expected<ContentChecksum, SystemError> copyBytes(int from, int to, std::int64_t count, SystemCalls& calls) {
    constexpr std::int64_t blockSize = std::int64_t{1} << 20;
    std::vector<char> block(static_cast<std::size_t>(std::clamp<std::int64_t>(count, 1, blockSize)));
    ContentHasher hasher;
    while (count > 0) {
        const std::span wanted(block.data(), static_cast<std::size_t>(std::min(count, blockSize)));
        const auto length = readSome(from, wanted, calls);
        if (!length)
            return std::unexpected(length.error());
        if (*length == 0)
            return std::unexpected(SystemError{EIO});
        const std::string_view bytes(block.data(), *length);
        if (auto written = writeAll(to, bytes, calls); !written)
            return std::unexpected(written.error());
        hasher.update(bytes);
        count -= static_cast<std::int64_t>(*length);
    }
    return hasher.checksum();
}

std::expected<void, SystemError> moveTo(int descriptor, std::int64_t offset, SystemCalls& calls) {
    if (uninterrupted([&] { return calls.seek(descriptor, offset, SEEK_SET); }) < 0)
        return std::unexpected(SystemError::last());
    return {};
}

} // namespace quelm
