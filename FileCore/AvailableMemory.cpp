#include "FileCore/AvailableMemory.h"

#include "FileCore/FileDescriptor.h"

#include <array>
#include <charconv>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace quelm {

std::optional<std::int64_t> availableMemory() {
    // The line is the third one.
    std::array<char, 4096> text{};
    if (const auto file = openFile("/proc/meminfo", O_RDONLY)) {
        if (const auto length = readSome(file->number(), text)) {
            if (const auto bytes = availableMemoryIn({text.data(), *length}))
                return bytes;
        }
    }
    const std::int64_t pages = ::sysconf(_SC_AVPHYS_PAGES);
    const std::int64_t pageSize = ::sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? std::optional(pages * pageSize) : std::nullopt;
}

std::optional<std::int64_t> availableMemoryIn(std::string_view meminfo) {
    constexpr std::string_view label = "\nMemAvailable:";
    const std::size_t line = meminfo.find(label);
    if (line == std::string_view::npos)
        return std::nullopt;
    meminfo.remove_prefix(line + label.size());
    const std::size_t first = meminfo.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return std::nullopt;
    meminfo.remove_prefix(first);
    std::int64_t kibibytes = 0;
    const auto [end, error] = std::from_chars(meminfo.data(), meminfo.data() + meminfo.size(), kibibytes);
    const std::string_view unit(end, static_cast<std::size_t>(meminfo.data() + meminfo.size() - end));
    constexpr std::int64_t unitSize = 1024;
    if (error != std::errc() || kibibytes < 0 || kibibytes > std::numeric_limits<std::int64_t>::max() / unitSize ||
        !unit.starts_with(" kB\n"))
        return std::nullopt;
    return kibibytes * unitSize;
}

} // namespace quelm
