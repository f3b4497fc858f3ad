#include "Benchmarks/Outline/EditSession.h"

#include "Benchmarks/Harness/Timing.h"
#include "TextCore/Check.h"

namespace quelm::bench {

EditSession::EditSession(OutlineDocument& document) : tree_(document.tree) {
    outline_.rebuild(tree_);
    outline_.setExpanded(tree_.root(), true, true, tree_);
    tree_.prepareKeyIndex(document.largeObject);
}

void EditSession::measure(const Preparation& prepare, Samples& doing, Samples& undoing) {
    const std::int64_t rows = outline_.rowCount();
    std::vector<TreeEdit> inverse;
    doing.add(secondsOf([&] {
        const std::optional<TreeChange> change = prepare(tree_);
        require(change.has_value(), "a benchmarked edit changes the tree");
        inverse = apply(change->edits);
    }));
    undoing.add(secondsOf([&] { apply(inverse); }));
    require(outline_.rowCount() == rows, "undoing an edit restores its rows");
}

std::vector<TreeEdit> EditSession::apply(std::span<const TreeEdit> edits) {
    std::vector<TreeEdit> inverse = tree_.apply(edits);
    std::vector<TreeEdit> both(edits.begin(), edits.end());
    both.insert(both.end(), inverse.begin(), inverse.end());
    outline_.update(both, tree_);
    return inverse;
}

} // namespace quelm::bench
