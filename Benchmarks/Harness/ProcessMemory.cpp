#include "Benchmarks/Harness/ProcessMemory.h"

#include "TextCore/PageMemory.h"

#include <fstream>
#include <string>
#include <string_view>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace quelm::bench::processmemory {

namespace {

/// The bytes that a file of the system tells in kilobytes behind a word.
std::optional<std::int64_t> bytesBehind(const char* file, std::string_view word) {
    std::ifstream stream(file);
    std::string next;
    while (stream >> next) {
        std::int64_t kilobytes = 0;
        if (next == word && stream >> kilobytes)
            return kilobytes * 1024;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::int64_t> residentBytes() {
    // The counters of /proc/self/statm are kept by processor and lag behind; this adds the pages up.
    return bytesBehind("/proc/self/smaps_rollup", "Rss:");
}

std::optional<std::int64_t> peakBytes() {
    return bytesBehind("/proc/self/status", "VmHWM:");
}

void restartPeak() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

void returnFreeMemory() {
    pagememory::releaseKept();
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

} // namespace quelm::bench::processmemory
