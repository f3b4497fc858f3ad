#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/TreeOutline.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <vector>

namespace quelm {

class TreeView;

/// The same of a tree that takes the place of another.
struct CarriedTreeViewState {
    TreeEditor::PreparedRows rows;
    /// A row that was in the viewport, and how far above the top of the viewport it began; absent when none of those is
    /// left.
    std::optional<NodeID> anchor;
    std::int64_t pixelsAboveAnchor = 0;
    std::int64_t verticalPosition = 0;
    std::int64_t horizontalPosition = 0;

    /// Scrolls a view that has these rows.
    void restore(TreeView& view) const;
};

/// What is expanded and selected in a tree, and which rows are seen. Holds the tree, so that all that can be asked for
/// when it has given way to another.
struct TreeViewState {
    JSONTree tree;
    TreeOutline outline;
    std::optional<NodeID> selection;
    /// The rows in the viewport.
    std::vector<NodeID> visible;
    std::int64_t pixelsAboveFirst = 0;
    std::int64_t rowHeight = 0;
    std::int64_t verticalPosition = 0;
    std::int64_t horizontalPosition = 0;

    /// The view must have rows. O(rows in the viewport) besides copying the outline, which shares blocks.
    static TreeViewState of(TreeView& view);

    /// Whether the view still shows that, as far as it can be told at a glance.
    bool isStillOf(TreeView& view) const;

    /// By path: keys in objects, indexes in arrays. What is selected and gone gives way to what held it. O(nodes) at
    /// most, for any thread; absent when there is no memory for it. When asked to stop it returns soon, with nothing.
    std::optional<CarriedTreeViewState> carriedOverTo(const JSONTree& other, const std::stop_token& stop = {}) const;
};

} // namespace quelm
