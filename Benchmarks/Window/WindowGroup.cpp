#include "Benchmarks/Groups.h"
#include "Benchmarks/OffscreenApplication.h"
#include "Benchmarks/Options.h"
#include "Benchmarks/Window/WindowBenchmarks.h"

#include <string_view>

namespace quelm::bench {

bool runWindowGroup(const Options& options) {
    const auto isWanted = [&options](std::string_view name) {
        return name.find(options.only) != std::string_view::npos;
    };
    if (isWanted("start"))
        measureStart();
    OffscreenApplication application;
    if (isWanted("5M-rows")) {
        LargeWindow large;
        measureExpansion(large);
        measureScrolling(large);
        measureWindowEdits(large);
    }
    if (isWanted("string-10MB"))
        measureLongField();
    measureOperations(application.watched(), options);
    return true;
}

} // namespace quelm::bench
