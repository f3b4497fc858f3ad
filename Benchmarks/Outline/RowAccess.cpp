#include "Benchmarks/Generator/Random.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/Outline/OutlineBenchmarks.h"
#include "JSONCore/TreeOutline.h"
#include "TextCore/Check.h"

namespace quelm::bench {

namespace {

constexpr int rounds = 20'000;
constexpr int screens = 1'000;
constexpr std::int64_t rowsPerScreen = 60;

std::int64_t randomBelow(std::int64_t bound, Random& random) {
    return random.below(static_cast<std::uint32_t>(bound));
}

Samples makeRows(const TreeOutline& outline, const JSONTree& tree) {
    Random random(2);
    Samples samples;
    for (int round = 0; round < rounds; ++round) {
        const std::int64_t index = randomBelow(outline.rowCount(), random);
        samples.add(secondsOf([&] { keep(outline.row(index, tree)); }));
    }
    return samples;
}

Samples makeScreens(const TreeOutline& outline, const JSONTree& tree) {
    Random random(3);
    Samples samples;
    for (int round = 0; round < screens; ++round) {
        const std::int64_t first = randomBelow(outline.rowCount() - rowsPerScreen, random);
        samples.add(secondsOf([&] {
            for (std::int64_t index = first; index < first + rowsPerScreen; ++index)
                keep(outline.row(index, tree));
        }));
    }
    return samples;
}

Samples findRows(const TreeOutline& outline) {
    Random random(4);
    Samples samples;
    for (int round = 0; round < rounds; ++round) {
        const std::int64_t index = randomBelow(outline.rowCount(), random);
        const NodeID id = outline.rowID(index);
        std::optional<std::int64_t> found;
        samples.add(secondsOf([&] { found = outline.index(id); }));
        require(found == index, "the row of a node is where its node stands");
    }
    return samples;
}

} // namespace

void measureRowAccess(const OutlineDocument& document) {
    TreeOutline outline;
    outline.rebuild(document.tree);
    outline.setExpanded(document.tree.root(), true, true, document.tree);

    constexpr int copies = 3;
    Samples indexing;
    for (int copy = 0; copy < copies; ++copy) {
        // A copy has no index of keys yet.
        const JSONTree fresh = document.tree;
        indexing.add(secondsOf([&] { fresh.prepareKeyIndex(document.largeObject); }));
    }
    report::latency(outlineLabel("key-index", "object-1M"), indexing);

    document.tree.prepareKeyIndex(document.largeObject);
    report::latency(outlineLabel("row", "5M-rows"), makeRows(outline, document.tree));
    report::latency(outlineLabel("screen-of-60", "5M-rows"), makeScreens(outline, document.tree));
    report::latency(outlineLabel("index-of", "5M-rows"), findRows(outline));
}

} // namespace quelm::bench
