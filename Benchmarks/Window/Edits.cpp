#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Window/WindowBenchmarks.h"
#include "TextCore/Check.h"

#include <functional>
#include <optional>
#include <vector>

namespace quelm::bench {

namespace {

constexpr int rounds = 60;
constexpr int roundsBesideSnapshot = 20;

/// Where to edit: near a row, in one container where one is named. The name is that of the results.
struct Place {
    std::string name;
    std::int64_t row;
    std::optional<NodeID> container;
};

/// Whether somebody else has the content meanwhile, as a save in the background does.
enum class Snapshot { none, alive };

std::vector<Place> placesOf(const LargeWindow& large) {
    const TreeOutline& outline = large.window.outline();
    const auto inside = [&outline](NodeID container) { return *outline.index(container) + 1; };
    constexpr std::int64_t size = OutlineDocument::largeContainerSize;
    const std::int64_t array = inside(large.largeArray);
    const std::int64_t object = inside(large.largeObject);
    const std::int64_t rows = outline.rowCount();
    return {{"front", 2, {}},
            {"middle", rows / 4, {}},
            {"end", rows - 1, {}},
            {"array-1M-front", array, large.largeArray},
            {"array-1M-middle", array + size / 2, large.largeArray},
            {"array-1M-end", array + size - 1, large.largeArray},
            {"object-1M-front", object, large.largeObject},
            {"object-1M-middle", object + size / 2, large.largeObject},
            {"object-1M-end", object + size - 1, large.largeObject}};
}

/// Whether an operation can be done to a node.
using Fitness = bool (*)(const JSONTree& tree, NodeID id);

bool isLeaf(const JSONTree& tree, NodeID id) {
    return !isContainer(tree.kind(id));
}
bool isBoolean(const JSONTree& tree, NodeID id) {
    return tree.kind(id) == NodeKind::bool_;
}
bool isLeafMember(const JSONTree& tree, NodeID id) {
    return isLeaf(tree, id) && tree.isObjectMember(id);
}

class EditsAtPlace {
public:
    EditsAtPlace(TreeWindow& window, const Place& place) : window_(window), editor_(window.editor()), place_(place) {}

    void run() {
        measureAll(rounds, Snapshot::none);
        report::latency(windowLabel("undo", place_.name), undoing_);
        report::latency(windowLabel("redo", place_.name), redoing_);
        if (!opening_.empty())
            report::latency(windowLabel("open-field", place_.name), opening_);
        report::latency(windowLabel("escape-field", place_.name), closing_);
        measureAll(roundsBesideSnapshot, Snapshot::alive);
        report::latency(windowLabel("edit-beside-snapshot", place_.name), besideSnapshot_);
    }

private:
    void measureAll(int times, Snapshot snapshot) {
        measureRename(times, snapshot);
        measure("toggle", times, snapshot, isBoolean, [this] { window_.press(Qt::Key_F2); });
        measure("insert", times, snapshot, isLeaf, [this] { editor_.insert(false); });
        measure("duplicate-leaf", times, snapshot, isLeaf, [this] { editor_.duplicate(); });
        measureMove(times, snapshot);
        measure("remove", times, snapshot, isLeaf, [this] { window_.press(Qt::Key_Delete); });
    }

    /// The nearest node to the place that fits, in its container; absent when there is none nearby.
    std::optional<NodeID> nodeNearby(Fitness fits) const {
        constexpr std::int64_t reach = 40;
        const TreeOutline& outline = window_.outline();
        const auto fitting = [&](std::int64_t row) {
            if (row < 0 || row >= outline.rowCount())
                return false;
            const NodeID id = outline.rowID(row);
            return fits(window_.tree(), id) && (!place_.container || window_.tree().parent(id) == place_.container);
        };
        for (std::int64_t distance = 0; distance < reach; ++distance) {
            for (const std::int64_t row : {place_.row + distance, place_.row - distance})
                if (fitting(row))
                    return outline.rowID(row);
        }
        return std::nullopt;
    }

    /// Return in a field in which a letter was typed.
    void measureRename(int times, Snapshot snapshot) {
        measure(
            "rename", times, snapshot, isLeafMember, [this] { window_.press(Qt::Key_Return); },
            [this] {
                opening_.add(window_.secondsToFrame([this] { editor_.activate(TreeEditor::Field::key); }));
                window_.press(Qt::Key_X, {}, QStringLiteral("x"));
                window_.settle();
            });
    }

    void measureMove(int times, Snapshot snapshot) {
        measure("move", times, snapshot, isLeaf, [this] {
            const bool isFirst = window_.tree().indexInParent(*editor_.selection()) == 0;
            editor_.move(isFirst ? 1 : -1);
        });
    }

    /// Makes an edit, undoes it, does it again and undoes it for good.
    void measure(const std::string& operation, int times, Snapshot snapshot, Fitness fits,
                 const std::function<void()>& work, const std::function<void()>& prepare = {}) {
        const std::optional<NodeID> node = nodeNearby(fits);
        if (!node)
            return;
        Samples doing;
        const std::int64_t rows = window_.outline().rowCount();
        for (int round = 0; round < times; ++round) {
            window_.goTo(*node);
            if (prepare) {
                prepare();
                window_.settle();
            }
            std::optional<JSONContent> held;
            if (snapshot == Snapshot::alive)
                held = window_.document().snapshot();
            const double seconds = window_.secondsToFrame(work);
            require(window_.undoManager().canUndo(), "a measured edit is a step");
            (snapshot == Snapshot::alive ? besideSnapshot_ : doing).add(seconds);
            held.reset();
            if (editor_.editing())
                closing_.add(window_.secondsToFrame([this] { window_.press(Qt::Key_Escape); }));
            undoing_.add(window_.secondsToFrame([this] { window_.undoManager().undo(); }));
            redoing_.add(window_.secondsToFrame([this] { window_.undoManager().redo(); }));
            window_.undoManager().undo();
            window_.settle();
            require(window_.outline().rowCount() == rows, "undoing an edit restores its rows");
        }
        window_.undoManager().removeAllActions();
        if (snapshot == Snapshot::none)
            report::latency(windowLabel(operation, place_.name), doing);
    }

    TreeWindow& window_;
    TreeEditor& editor_;
    const Place& place_;
    Samples undoing_;
    Samples redoing_;
    Samples besideSnapshot_;
    Samples opening_;
    Samples closing_;
};

/// Copies of one member: their keys are "member 1 copia", "member 1 copia 2" and so on.
void measureManyCopies(LargeWindow& large) {
    constexpr int copies = 2'000;
    TreeWindow& window = large.window;
    const NodeID member = window.tree().children(large.largeObject)[1];
    Samples duplicating;
    Samples undoing;
    for (int copy = 0; copy < copies; ++copy) {
        window.goTo(member);
        duplicating.add(window.secondsToFrame([&] { window.editor().duplicate(); }));
    }
    for (int copy = 0; copy < copies; ++copy)
        undoing.add(window.secondsToFrame([&] { window.undoManager().undo(); }));
    window.undoManager().removeAllActions();
    report::latency(windowLabel("duplicate-2000-times", "object-1M"), duplicating);
    report::latency(windowLabel("undo-2000-times", "object-1M"), undoing);
}

} // namespace

void measureWindowEdits(LargeWindow& large) {
    for (const Place& place : placesOf(large))
        EditsAtPlace(large.window, place).run();
    measureManyCopies(large);
}

} // namespace quelm::bench
