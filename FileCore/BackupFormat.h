#pragma once

#include "FileCore/ContentChecksum.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How the former contents of a file lie in a backup, little-endian:
///
/// 1. A head: 8 bytes of magic with the version, the length of the contents (8), that of the file's path (4), the low
///    64 bits of XXH3 over these, and the path. It tells how long the whole backup is: a shorter one was never
///    finished.
/// 2. The contents.
/// 3. A tail: their checksum, that of the contents that were to take their place (24 bytes each), and the low 64 bits
///    of XXH3 over head and tail up to there. It is written last.
namespace quelm::backupFormat {

inline constexpr std::string_view magic = "QuelmBk1";
/// The head without the path.
inline constexpr std::size_t fixedHeadSize = magic.size() + 8 + 4 + 8;
inline constexpr std::size_t tailSize = 56;

std::string head(std::string_view path, std::int64_t contentsSize);

/// What the head tells of the lengths, in bytes.
struct Lengths {
    std::size_t path = 0;
    std::int64_t contents = 0;

    std::size_t head() const { return fixedHeadSize + path; }
    /// Of the whole backup.
    std::int64_t backup() const { return static_cast<std::int64_t>(head() + tailSize) + contents; }
};

/// Absent when it is no head, or a damaged one.
std::optional<Lengths> lengths(std::string_view fixedHead);

struct Checksums {
    ContentChecksum before;
    ContentChecksum after;
};

std::string tail(std::string_view head, const Checksums& checksums);

/// Absent when it is not the tail that belongs to the head.
std::optional<Checksums> checksums(std::string_view head, std::string_view tail);

} // namespace quelm::backupFormat
