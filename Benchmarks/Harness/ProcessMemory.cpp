#include "Benchmarks/Harness/ProcessMemory.h"

#include "TextCore/PageMemory.h"

#include <fstream>
#include <string>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace quelm::bench::processmemory {

std::optional<std::int64_t> residentBytes() {
    // The counters of /proc/self/statm are kept by processor and lag behind; this adds the pages up.
    std::ifstream pages("/proc/self/smaps_rollup");
    std::string word;
    while (pages >> word) {
        std::int64_t kilobytes = 0;
        if (word == "Rss:" && pages >> kilobytes)
            return kilobytes * 1024;
    }
    return std::nullopt;
}

void returnFreeMemory() {
    pagememory::releaseKept();
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

} // namespace quelm::bench::processmemory
