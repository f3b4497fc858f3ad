#include "Benchmarks/Generator/Random.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/Window/WindowBenchmarks.h"
#include "Quelm/TreeEditor/TreeTypeAhead.h"

#include <QCoreApplication>

#include <chrono>
#include <functional>

namespace quelm::bench {

namespace {

constexpr int rounds = 300;

/// A stretch of rows.
struct Rows {
    std::string_view name;
    std::int64_t first;
    std::int64_t count;
};

class Scrolling {
public:
    explicit Scrolling(TreeWindow& window) : window_(window) {}

    void jump(const Rows& rows) {
        measure("jump", rows, [&] {
            const auto offset = static_cast<std::int64_t>(random_.below(static_cast<std::uint32_t>(rows.count)));
            window_.view().verticalAxis().setPosition((rows.first + offset) * window_.view().rowStyle().rowHeight);
        });
    }

    void step(const Rows& rows) {
        goTo(rows);
        measure("page-down", rows, [this] { window_.press(Qt::Key_PageDown); });
        goTo(rows);
        measure("key-down", rows, [this] { window_.press(Qt::Key_Down); });
        goTo(rows);
        measure("wheel", rows, [this] { window_.turnWheel(1); });
    }

    void measureEnds() {
        Samples samples;
        for (int round = 0; round < rounds / 2; ++round) {
            samples.add(window_.secondsToFrame([this] { window_.press(Qt::Key_End); }));
            samples.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Home); }));
        }
        report::latency(windowLabel("scroll", "home-end"), samples);
    }

    /// A key that no row has: all rows are searched, in slices between which the window reacts.
    void searchAll() {
        TreeTypeAhead search(window_.editor());
        Samples slices;
        Samples searches;
        for (int round = 0; round < 5; ++round) {
            search.cancel();
            double total = 0;
            const auto addSlice = [&](double seconds) {
                slices.add(seconds);
                total += seconds;
            };
            addSlice(secondsOf([&] { search.type(QStringLiteral("no such key"), 0, std::chrono::milliseconds(0)); }));
            while (search.isSearching())
                addSlice(secondsOf([] { QCoreApplication::processEvents(); }));
            searches.add(total);
        }
        report::latency(windowLabel("type-ahead", "slice"), slices);
        report::latency(windowLabel("type-ahead", "all-rows"), searches);
    }

private:
    void goTo(const Rows& rows) { window_.goTo(window_.outline().rowID(rows.first + rows.count / 2)); }

    void measure(std::string_view how, const Rows& rows, const std::function<void()>& work) {
        Samples samples;
        for (int round = 0; round < rounds; ++round)
            samples.add(window_.secondsToFrame(work));
        report::latency(windowLabel("scroll", std::string(how) + "-" + std::string(rows.name)), samples);
    }

    TreeWindow& window_;
    Random random_{5};
};

} // namespace

void measureScrolling(LargeWindow& large) {
    const TreeOutline& outline = large.window.outline();
    const Rows places[] = {{"anywhere", 0, outline.rowCount()},
                           {"array-1M", *outline.index(large.largeArray) + 1, OutlineDocument::largeContainerSize},
                           {"object-1M", *outline.index(large.largeObject) + 1, OutlineDocument::largeContainerSize}};
    Scrolling scrolling(large.window);
    for (const Rows& rows : places)
        scrolling.jump(rows);
    for (const Rows& rows : places)
        scrolling.step(rows);
    scrolling.measureEnds();
    scrolling.searchAll();
}

} // namespace quelm::bench
