#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/NodeSet.h"
#include "JSONCore/OutlineRows.h"
#include "JSONCore/TreeEdit.h"
#include "JSONCore/TreeRow.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quelm {

/// The visible rows of a tree, one a node in document order, together with the set of expanded containers.
///
/// A row is stored as its node and depth alone; a `TreeRow` is made on demand from the tree, which must be the one that
/// the outline was last brought up to date with. Copies share blocks of rows. Finding the row of an id and the id of a
/// row are O(log rows). For one thread at a time.
///
/// An id outside the tree's store is a programming error; a node without a row, or a scalar to expand, is not: nothing
/// happens.
class TreeOutline {
public:
    /// The number of visible rows. 0 before the first `rebuild`.
    std::int64_t rowCount() const { return rows_.size(); }

    /// The row at a position from 0 to below `rowCount()`.
    TreeRow row(std::int64_t index, const JSONTree& tree) const;

    /// The same for a view, at a cost that does not follow the length of the texts: the label has `TreeRow::previewKey`
    /// of the key and the value is `TreeRow::previewText`, so the row differs from `row` where a text takes more than
    /// `TreeRow::longestPreview` bytes alone. Its mark is that of the whole key, which is compared with its siblings'
    /// as far as they begin with the same.
    TreeRow previewRow(std::int64_t index, const JSONTree& tree) const;

    /// The node and the depth of a row, without making it.
    NodeID rowID(std::int64_t index) const { return rows_[index].id; }
    std::int64_t rowDepth(std::int64_t index) const { return rows_[index].depth; }

    /// Where the node's row is, if it has one.
    std::optional<std::int64_t> index(NodeID id) const { return rows_.indexOf(id); }

    /// The containers whose children are shown wherever they are visible themselves. Ids of detached nodes may stay in
    /// it.
    const NodeSet& expanded() const { return expanded_; }

    /// The rows of the visible subtree at `id`, the first with the given depth, label and mark. O(rows made).
    std::vector<TreeRow> buildRows(NodeID id, std::int64_t depth, const TreeRow::Label& label, bool isDuplicateKey,
                                   const JSONTree& tree) const;

    /// Makes all rows anew, with the top-level value expanded.
    void rebuild(const JSONTree& tree);

    /// Makes the rows of one node's subtree anew; removes them when the node is detached. For the holder: `rebuild`.
    void refresh(NodeID id, const JSONTree& tree);

    /// Expands or collapses a container, with all containers below it when `recursive`. O(nodes walked + rows changed).
    void setExpanded(NodeID id, bool isExpanded, bool recursive, const JSONTree& tree);

    /// Expands every ancestor, so that the node has a row.
    void reveal(NodeID id, const JSONTree& tree);

    /// Brings the rows up to date with edits that the tree has taken: the edits of a change followed by the inverse
    /// list that applying them returned. For a few nodes O(rows of the nodes that were linked or unlinked), however
    /// many siblings they have; for hundreds, the rows of their parents are made anew.
    void update(std::span<const TreeEdit> edits, const JSONTree& tree);

    /// Checks the invariants of the rows against the tree, all of them: for tests. A violation is a programming error.
    void checkInvariants(const JSONTree& tree) const;

private:
    /// All of a row but its label and its value.
    TreeRow rowWithoutTexts(std::int64_t index, const JSONTree& tree) const;
    void refreshParents(std::span<const TreeEdit> edits, const JSONTree& tree);

    NodeSet expanded_;
    OutlineRows rows_;
};

} // namespace quelm
