#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/Outline/EditSession.h"
#include "Benchmarks/Outline/OutlineBenchmarks.h"

#include <array>

namespace quelm::bench {

namespace {

constexpr int rounds = 300;

/// An operation stops early when it is so slow that its rounds would take longer.
constexpr double mostSeconds = 2;

/// A child of a large container, and its position in words.
struct Place {
    NodeID container;
    std::int64_t position;
    std::string name;
};

std::vector<Place> places(const OutlineDocument& document) {
    constexpr std::int64_t middle = OutlineDocument::largeContainerSize / 2;
    constexpr std::int64_t last = OutlineDocument::largeContainerSize - 1;
    std::vector<Place> all;
    for (const auto& [container, name] :
         {std::pair{document.largeArray, "array-1M"}, {document.largeObject, "object-1M"}})
        for (const auto& [position, where] :
             {std::pair{std::int64_t{0}, "-front"}, {middle, "-middle"}, {last, "-end"}})
            all.push_back({container, position, std::string(name) + where});
    return all;
}

/// What a user may do to a child.
class Operations {
public:
    Operations(const JSONTree& tree, const Place& place) : place_(place) {
        const ChildList children = tree.children(place.container);
        child_ = children[place.position];
        boolean_ = children[place.position / OutlineDocument::booleanEvery * OutlineDocument::booleanEvery];
    }

    std::optional<TreeChange> rename(JSONTree&) {
        return TreeChange{{TreeEdit::setKey(child_, "renamed " + std::to_string(renamed_++))}, child_};
    }

    std::optional<TreeChange> toggle(JSONTree& tree) {
        const std::string_view opposite = tree.scalar(boolean_) == "true" ? "false" : "true";
        return TreeChange{{TreeEdit::setValue(boolean_, NodeKind::bool_, opposite)}, boolean_};
    }

    std::optional<TreeChange> insert(JSONTree& tree) { return tree.insertChange(child_, false); }
    std::optional<TreeChange> duplicate(JSONTree& tree) { return tree.duplicateChange(child_); }
    std::optional<TreeChange> move(JSONTree& tree) { return tree.moveChange(child_, place_.position == 0 ? 1 : -1); }
    std::optional<TreeChange> remove(JSONTree& tree) { return tree.removeChange(child_); }

    bool isMember(const JSONTree& tree) const { return tree.isObjectMember(child_); }

private:
    Place place_;
    NodeID child_;
    NodeID boolean_;
    int renamed_ = 0;
};

struct Operation {
    std::string_view name;
    std::optional<TreeChange> (Operations::*prepare)(JSONTree&);
};

constexpr Operation renaming{"rename", &Operations::rename};
constexpr std::array anywhere = std::to_array<Operation>({{"toggle", &Operations::toggle},
                                                          {"insert", &Operations::insert},
                                                          {"duplicate", &Operations::duplicate},
                                                          {"move", &Operations::move},
                                                          {"remove", &Operations::remove}});

/// One child and all that is done to it; its undo steps are measured together.
class PlaceMeasurement {
public:
    PlaceMeasurement(EditSession& session, const Place& place)
        : session_(session), place_(place), operations_(session.tree(), place) {}

    void run() {
        if (operations_.isMember(session_.tree()))
            measure(renaming);
        for (const Operation& operation : anywhere)
            measure(operation);
        report::latency(outlineLabel("undo", place_.name), undoing_);
        measureBesideSnapshots();
    }

private:
    void measure(const Operation& operation) {
        Samples doing;
        double spent = 0;
        for (int round = 0; round < rounds && spent < mostSeconds; ++round)
            spent += secondsOf([&] {
                session_.measure([&](JSONTree& tree) { return (operations_.*operation.prepare)(tree); }, doing,
                                 undoing_);
            });
        report::latency(outlineLabel(operation.name, place_.name), doing);
    }

    /// A save or a search holds a copy of the tree: an edit then copies the blocks that it touches.
    void measureBesideSnapshots() {
        constexpr int snapshots = 100;
        Samples doing;
        Samples undoing;
        for (int round = 0; round < snapshots; ++round) {
            const JSONTree snapshot = session_.tree();
            session_.measure([&](JSONTree& tree) { return operations_.insert(tree); }, doing, undoing);
        }
        report::latency(outlineLabel("insert-beside-snapshot", place_.name), doing);
    }

    EditSession& session_;
    Place place_;
    Operations operations_;
    Samples undoing_;
};

/// A subtree of a million values: the cost is that of the copies.
void measureLargeDuplicate(EditSession& session, NodeID id, std::string_view where) {
    constexpr int copies = 5;
    Samples doing;
    Samples undoing;
    for (int copy = 0; copy < copies; ++copy)
        session.measure([&](JSONTree& tree) { return tree.duplicateChange(id); }, doing, undoing);
    report::latency(outlineLabel("duplicate", where), doing);
    report::latency(outlineLabel("undo-duplicate", where), undoing);
}

} // namespace

void measureEdits(OutlineDocument& document) {
    EditSession session(document);
    for (const Place& place : places(document))
        PlaceMeasurement(session, place).run();
    measureLargeDuplicate(session, document.largeArray, "array-1M");
    measureLargeDuplicate(session, document.largeObject, "object-1M");
}

} // namespace quelm::bench
