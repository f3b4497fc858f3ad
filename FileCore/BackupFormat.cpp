#include "FileCore/BackupFormat.h"

#include "FileCore/LittleEndian.h"

#include <limits>

namespace quelm::backupFormat {

namespace {

using littleEndian::put;
using littleEndian::take;

void put(std::string& bytes, const ContentChecksum& checksum) {
    put(bytes, static_cast<std::uint64_t>(checksum.size));
    put(bytes, checksum.high);
    put(bytes, checksum.low);
}

ContentChecksum takeChecksum(std::string_view& bytes) {
    ContentChecksum checksum;
    checksum.size = static_cast<std::int64_t>(take<std::uint64_t>(bytes));
    checksum.high = take<std::uint64_t>(bytes);
    checksum.low = take<std::uint64_t>(bytes);
    return checksum;
}

} // namespace

std::string head(std::string_view path, std::int64_t contentsSize) {
    std::string bytes(magic);
    put(bytes, static_cast<std::uint64_t>(contentsSize));
    put(bytes, static_cast<std::uint32_t>(path.size()));
    put(bytes, ContentChecksum::of(bytes).low);
    bytes += path;
    return bytes;
}

std::optional<Lengths> lengths(std::string_view fixedHead) {
    if (fixedHead.size() != fixedHeadSize || !fixedHead.starts_with(magic))
        return std::nullopt;
    std::string_view rest = fixedHead.substr(magic.size());
    const auto contents = take<std::uint64_t>(rest);
    const auto path = take<std::uint32_t>(rest);
    const std::string_view summed = fixedHead.substr(0, fixedHead.size() - rest.size());
    if (take<std::uint64_t>(rest) != ContentChecksum::of(summed).low)
        return std::nullopt;
    // Far from where sums of lengths would overflow.
    if (contents > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max() / 2))
        return std::nullopt;
    return Lengths{path, static_cast<std::int64_t>(contents)};
}

std::string tail(std::string_view head, const Checksums& checksums) {
    std::string bytes;
    put(bytes, checksums.before);
    put(bytes, checksums.after);
    put(bytes, ContentChecksum::of(std::string(head) + bytes).low);
    return bytes;
}

std::optional<Checksums> checksums(std::string_view head, std::string_view tail) {
    if (tail.size() != tailSize)
        return std::nullopt;
    std::string_view rest = tail;
    Checksums found;
    found.before = takeChecksum(rest);
    found.after = takeChecksum(rest);
    if (backupFormat::tail(head, found) != tail)
        return std::nullopt;
    return found;
}

} // namespace quelm::backupFormat
