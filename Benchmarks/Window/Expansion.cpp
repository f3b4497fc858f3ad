#include "Benchmarks/Harness/ProcessMemory.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Window/WindowBenchmarks.h"
#include "TextCore/Check.h"

#include <optional>

namespace quelm::bench {

namespace {

constexpr std::string_view whole = "5M-rows";

class Expansion {
public:
    explicit Expansion(LargeWindow& large) : large_(large), window_(large.window) {}

    void run() {
        measureFirst();
        measureAll();
        measureOne(large_.largeArray, "array-1M");
        measureOne(large_.largeObject, "object-1M");
        measureReload();
    }

private:
    void goToRoot() { window_.goTo(window_.tree().root()); }

    Samples& expandAll(Samples& samples) {
        goToRoot();
        samples.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Right, Qt::AltModifier); }));
        constexpr std::int64_t fewest = OutlineDocument::nodes - OutlineDocument::nodes / 50;
        require(window_.outline().rowCount() > fewest, "all rows are shown");
        return samples;
    }

    void collapseAll(Samples& samples) {
        goToRoot();
        samples.add(window_.secondsToFrame([this] { window_.editor().setAllExpanded(false); }));
    }

    void measureFirst() {
        Samples samples;
        processmemory::returnFreeMemory();
        const auto before = processmemory::residentBytes();
        report::latency(windowLabel("expand-all-first", whole), expandAll(samples));
        const auto after = processmemory::residentBytes();
        if (before && after)
            report::memory(windowLabel("rows"),
                           static_cast<double>(*after - *before) / static_cast<double>(window_.outline().rowCount()),
                           "B/row");
        else
            report::skipped(windowLabel("rows"), "quelm", "the system does not tell resident memory");
    }

    void measureAll() {
        constexpr int rounds = 9;
        Samples expanding;
        Samples collapsing;
        for (int round = 0; round < rounds; ++round) {
            collapseAll(collapsing);
            expandAll(expanding);
        }
        report::latency(windowLabel("expand-all", whole), expanding);
        report::latency(windowLabel("collapse-all", whole), collapsing);
    }

    void measureOne(NodeID container, std::string_view name) {
        constexpr int rounds = 21;
        Samples expanding;
        Samples collapsing;
        for (int round = 0; round < rounds; ++round) {
            window_.goTo(container);
            collapsing.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Left); }));
            expanding.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Right); }));
        }
        report::latency(windowLabel("collapse", name), collapsing);
        report::latency(windowLabel("expand", name), expanding);
    }

    /// Whatever replaces the whole content, and its undo, brings a tree without indexes of its keys.
    void measureReload() {
        constexpr int rounds = 5;
        Samples reloading;
        Samples scrolling;
        for (int round = 0; round < rounds; ++round) {
            goToRoot();
            JSONContent content = window_.document().content();
            reloading.add(window_.secondsToFrame(
                [&] { window_.document().replaceContent(std::move(content), &window_.undoManager()); }));
            scrolling.add(window_.secondsToFrame(
                [this] { window_.view().scrollToRow(*window_.outline().index(large_.largeObject) + 500'000); }));
        }
        window_.undoManager().removeAllActions();
        report::latency(windowLabel("reload", whole), reloading);
        report::latency(windowLabel("first-scroll", "object-1M"), scrolling);
    }

    LargeWindow& large_;
    TreeWindow& window_;
};

} // namespace

void measureExpansion(LargeWindow& large) {
    Expansion(large).run();
}

} // namespace quelm::bench
