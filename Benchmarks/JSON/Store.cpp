#include "Benchmarks/Harness/ProcessMemory.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/JSON/JSONBenchmarks.h"

#include <algorithm>
#include <vector>

namespace quelm::bench {

namespace {

/// Below this the pages that a process takes anyway blur the figure.
constexpr std::int64_t fewestNodes = 100'000;
constexpr int rounds = 3;

} // namespace

void measureStore(Subject& subject) {
    // What is resident rises by the document alone: its text is there before. Freed memory of the runs before
    // must not serve it, so it goes back to the system first.
    std::vector<double> bytesPerNode;
    for (int round = 0; round < rounds; ++round) {
        processmemory::returnFreeMemory();
        const auto before = processmemory::residentBytes();
        subject.ours.parse(subject.text.view());
        const auto after = processmemory::residentBytes();
        const std::int64_t nodes = subject.ours.tree().nodeCount();
        subject.ours.discardDocument();
        if (!before || !after)
            return report::skipped(subject.label("store"), "quelm", "the system does not tell resident memory");
        if (nodes < fewestNodes)
            return;
        bytesPerNode.push_back(static_cast<double>(*after - *before) / static_cast<double>(nodes));
    }
    std::ranges::sort(bytesPerNode);
    report::memory(subject.label("store"), bytesPerNode[rounds / 2], "B/node");
}

} // namespace quelm::bench
