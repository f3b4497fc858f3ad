#include "Benchmarks/Harness/ProcessMemory.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/Outline/OutlineBenchmarks.h"
#include "JSONCore/TreeOutline.h"

#include <functional>
#include <optional>

namespace quelm::bench {

namespace {

constexpr std::string_view whole = "5M-rows";
constexpr int rounds = 7;

/// The wholesale operations, each on an outline as the one before has left it.
class RowBuilding {
public:
    explicit RowBuilding(const OutlineDocument& document) : document_(document), tree_(document.tree) {}

    void runRound() {
        processmemory::returnFreeMemory();
        outline_.emplace();
        firstRows_.add(secondsOf([&] { outline_->rebuild(tree_); }));
        const auto before = processmemory::residentBytes();
        expandAll_.add(secondsOf([&] { outline_->setExpanded(tree_.root(), true, true, tree_); }));
        const auto after = processmemory::residentBytes();
        if (before && after)
            bytesPerRow_ = static_cast<double>(*after - *before) / static_cast<double>(outline_->rowCount());
        rebuildAll_.add(secondsOf([&] { outline_->rebuild(tree_); }));
        toggle(document_.largeArray, collapseArray_, expandArray_);
        toggle(document_.largeObject, collapseObject_, expandObject_);
        collapseAll_.add(secondsOf([&] { outline_->setExpanded(tree_.root(), false, true, tree_); }));
        outline_.reset();
    }

    void print() const {
        report::latency(outlineLabel("first-rows", whole), firstRows_);
        report::latency(outlineLabel("expand-all", whole), expandAll_);
        report::latency(outlineLabel("rebuild-expanded", whole), rebuildAll_);
        report::latency(outlineLabel("collapse-all", whole), collapseAll_);
        report::latency(outlineLabel("collapse", "array-1M"), collapseArray_);
        report::latency(outlineLabel("expand", "array-1M"), expandArray_);
        report::latency(outlineLabel("collapse", "object-1M"), collapseObject_);
        report::latency(outlineLabel("expand", "object-1M"), expandObject_);
        if (bytesPerRow_)
            report::memory("outline/rows", *bytesPerRow_, "B/row");
        else
            report::skipped("outline/rows", "quelm", "the system does not tell resident memory");
    }

private:
    void toggle(NodeID id, Samples& collapsing, Samples& expanding) {
        collapsing.add(secondsOf([&] { outline_->setExpanded(id, false, false, tree_); }));
        expanding.add(secondsOf([&] { outline_->setExpanded(id, true, false, tree_); }));
    }

    const OutlineDocument& document_;
    const JSONTree& tree_;
    std::optional<TreeOutline> outline_;
    std::optional<double> bytesPerRow_;
    Samples firstRows_, expandAll_, rebuildAll_, collapseAll_;
    Samples collapseArray_, expandArray_, collapseObject_, expandObject_;
};

} // namespace

void measureRowBuilding(const OutlineDocument& document) {
    RowBuilding building(document);
    for (int round = 0; round < rounds; ++round)
        building.runRound();
    building.print();
}

} // namespace quelm::bench
