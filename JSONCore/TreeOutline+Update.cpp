// Bringing the rows up to date with edits, at a cost that follows the nodes linked and unlinked, not their siblings.
//
// A stored row is a node and its depth; labels, values, counts and marks are read from the tree. So a key or a value
// that changed needs nothing here, and a node that came, went or moved needs its own rows alone.

#include "JSONCore/OutlineRowBuilder.h"
#include "JSONCore/TreeOutline.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <unordered_set>

namespace quelm {

namespace {

/// The nodes that the edits link somewhere; with the inverse edits among them, also those that they unlink. A detached
/// node that was renamed is one that was unlinked.
std::vector<NodeID> linkedNodes(std::span<const TreeEdit> edits, const JSONTree& tree) {
    std::vector<NodeID> nodes;
    std::unordered_set<NodeID> seen;
    for (const TreeEdit& edit : edits) {
        const bool isAttached = tree.parent(edit.id()).has_value(); // stops at an id outside the store
        if ((edit.asInsert() || (edit.asSetKey() && !isAttached)) && seen.insert(edit.id()).second)
            nodes.push_back(edit.id());
    }
    return nodes;
}

bool replacesTopLevelValue(std::span<const TreeEdit> edits) {
    return std::ranges::any_of(
        edits, [](const TreeEdit& edit) { return edit.asInsert() && edit.asInsert()->parent == JSONTree::holder; });
}

/// Where the rows of a child without any belong: after the nearest earlier sibling that has rows, else after the
/// parent.
std::int64_t positionForRows(NodeID child, NodeID parent, std::int64_t parentRow, const OutlineRows& rows,
                             const JSONTree& tree) {
    const ChildList siblings = tree.children(parent);
    const std::int64_t index = siblings.indexOf(child);
    for (std::int64_t earlier = index - 1; earlier >= 0; --earlier) {
        if (const auto row = rows.indexOf(siblings[earlier]))
            return rows.stretchEnd(*row);
    }
    return parentRow + 1;
}

} // namespace

void TreeOutline::update(std::span<const TreeEdit> edits, const JSONTree& tree) {
    if (replacesTopLevelValue(edits)) {
        rebuild(tree);
        return;
    }
    const std::vector<NodeID> nodes = linkedNodes(edits, tree);
    constexpr std::size_t manyNodes = 256;
    if (nodes.size() > manyNodes) {
        refreshParents(edits, tree);
        return;
    }
    for (NodeID node : nodes) {
        if (const auto row = rows_.indexOf(node))
            rows_.replace(*row, rows_.stretchEnd(*row) - *row, {});
    }
    for (NodeID node : nodes) {
        const auto parent = tree.parent(node);
        if (!parent || !expanded_.contains(*parent) || rows_.indexOf(node))
            continue;
        const auto parentRow = rows_.indexOf(*parent);
        if (!parentRow)
            continue;
        const std::uint32_t depth = rows_[*parentRow].depth + 1;
        rows_.replace(positionForRows(node, *parent, *parentRow, rows_, tree), 0,
                      visibleRows(node, depth, expanded_, tree));
    }
}

void TreeOutline::refreshParents(std::span<const TreeEdit> edits, const JSONTree& tree) {
    std::unordered_set<NodeID> refreshed;
    for (const TreeEdit& edit : edits) {
        if (edit.asInsert() && refreshed.insert(edit.asInsert()->parent).second)
            refresh(edit.asInsert()->parent, tree);
    }
}

void TreeOutline::checkInvariants(const JSONTree& tree) const {
    rows_.checkInvariants();
    if (rowCount() == 0)
        return;
    const OutlineRows::Sequence fresh = visibleRows(tree.root(), 0, expanded_, tree);
    require(fresh.size() == static_cast<std::size_t>(rowCount()), "the outline has a row for every visible node");
    for (std::int64_t index = 0; index < rowCount(); ++index) {
        const OutlineRow& expected = fresh[static_cast<std::size_t>(index)];
        require(rowID(index) == expected.id && rowDepth(index) == expected.depth,
                "rows stand in document order at their depth");
    }
}

} // namespace quelm
