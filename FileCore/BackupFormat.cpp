#include "FileCore/BackupFormat.h"

namespace quelm::backupFormat {

namespace {

void append(std::string& bytes, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>(number >> (8 * i) & 0xff));
}

void append(std::string& bytes, const ContentChecksum& checksum) {
    append(bytes, static_cast<std::uint64_t>(checksum.size), 8);
    append(bytes, checksum.high, 8);
    append(bytes, checksum.low, 8);
}

/// Takes a number off the front; there must be so many bytes.
std::uint64_t take(std::string_view& bytes, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    bytes.remove_prefix(size);
    return number;
}

ContentChecksum takeChecksum(std::string_view& bytes) {
    ContentChecksum checksum;
    checksum.size = static_cast<std::int64_t>(take(bytes, 8));
    checksum.high = take(bytes, 8);
    checksum.low = take(bytes, 8);
    return checksum;
}

} // namespace

std::string head(std::string_view path) {
    std::string bytes(magic);
    append(bytes, path.size(), 4);
    bytes += path;
    return bytes;
}

std::optional<std::size_t> pathLength(std::string_view fixedHead) {
    if (fixedHead.size() < fixedHeadSize || !fixedHead.starts_with(magic))
        return std::nullopt;
    fixedHead.remove_prefix(magic.size());
    return take(fixedHead, 4);
}

std::string tail(std::string_view head, const Checksums& checksums) {
    std::string bytes;
    append(bytes, checksums.before);
    append(bytes, checksums.after);
    append(bytes, ContentChecksum::of(std::string(head) + bytes).low, 8);
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
