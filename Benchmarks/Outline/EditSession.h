#pragma once

#include "Benchmarks/Harness/Samples.h"
#include "Benchmarks/Outline/OutlineDocument.h"
#include "JSONCore/TreeOutline.h"

#include <functional>
#include <optional>

namespace quelm::bench {

/// A tree under edit with all its rows shown, as the tree editor drives it: a change is prepared, applied,
/// and the outline brought up to date with its edits and their inverses.
class EditSession {
public:
    /// The document must outlive the session and is changed by it.
    explicit EditSession(OutlineDocument& document);

    /// Prepares a change of the tree; absent when there is nothing to do.
    using Preparation = std::function<std::optional<TreeChange>(JSONTree&)>;

    /// Makes one change and undoes it, and adds what each took, preparation included, to the samples.
    void measure(const Preparation& prepare, Samples& doing, Samples& undoing);

    const JSONTree& tree() const { return tree_; }

private:
    std::vector<TreeEdit> apply(std::span<const TreeEdit> edits);

    JSONTree& tree_;
    TreeOutline outline_;
};

} // namespace quelm::bench
