#pragma once

#include "FileCore/ContentChecksum.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How the former contents of a file lie in a backup, little-endian: a head of 8 bytes of magic with the version, the
/// length of the file's path (4 bytes) and the path; the contents; a tail of their checksum, that of the contents that
/// were to take their place (24 bytes each), and the low 64 bits of XXH3 over head and tail up to there. The tail is
/// written last: a backup without one is not whole.
namespace quelm::backupFormat {

inline constexpr std::string_view magic = "QuelmBk1";
inline constexpr std::size_t fixedHeadSize = magic.size() + 4;
inline constexpr std::size_t tailSize = 56;

std::string head(std::string_view path);

/// The length of the path that a head tells which begins with these bytes; absent when it is no head.
std::optional<std::size_t> pathLength(std::string_view fixedHead);

struct Checksums {
    ContentChecksum before;
    ContentChecksum after;
};

std::string tail(std::string_view head, const Checksums& checksums);

/// Absent when it is not the tail that belongs to the head.
std::optional<Checksums> checksums(std::string_view head, std::string_view tail);

} // namespace quelm::backupFormat
