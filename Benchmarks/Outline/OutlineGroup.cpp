#include "Benchmarks/Groups.h"
#include "Benchmarks/Outline/OutlineBenchmarks.h"

namespace quelm::bench {

bool runOutlineGroup(const Options&) {
    OutlineDocument document = makeOutlineDocument();
    measureRowBuilding(document);
    measureRowAccess(document);
    measureEdits(document);
    return true;
}

} // namespace quelm::bench
