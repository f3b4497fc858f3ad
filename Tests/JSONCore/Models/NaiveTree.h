#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "JSONCore/TreeEdit.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quelm::test {

struct NaiveNode {
    NodeKind kind = NodeKind::null;
    std::string key;
    std::string scalar;
    std::vector<NodeID> children;
    std::optional<NodeID> parent;
};

/// What a `JSONTree` must do, done in the plainest way: a vector of nodes with strings and child lists of
/// their own, every count taken anew. Ids are the same as those of the tree it models when both see the same
/// calls.
class NaiveTree {
public:
    /// The holder alone, as a parser starts.
    NaiveTree();
    NaiveTree(NodeKind kind, std::string_view scalar);

    const NaiveNode& operator[](NodeID id) const { return nodes_[static_cast<std::size_t>(id.raw)]; }
    NodeID root() const { return nodes_[0].children.front(); }
    std::int64_t storedNodeCount() const { return static_cast<std::int64_t>(nodes_.size()); }
    std::int64_t nodeCount() const;
    std::int64_t subtreeSize(NodeID id) const;
    std::optional<std::int64_t> indexInParent(NodeID id) const;
    /// Whether `id` is `top` or lies below it.
    bool isInSubtree(NodeID id, NodeID top) const;
    std::string path(NodeID id) const;

    std::int64_t keyOccurrences(NodeID parent, std::string_view key) const;
    std::string uniqueKey(std::string_view base, NodeID parent) const;

    NodeID addNode(NodeKind kind, std::string_view key, std::string_view scalar);
    void attach(NodeID id, NodeID parent, std::int64_t index);
    std::optional<JSONTree::Position> detach(NodeID id);
    TreeEdit apply(const TreeEdit& edit);
    std::vector<TreeEdit> apply(std::span<const TreeEdit> edits);

    std::optional<TreeChange> insertChange(NodeID target, bool inside);
    std::optional<TreeChange> pasteChange(const NaiveTree& pasted, NodeID target, bool inside);
    std::optional<TreeChange> duplicateChange(NodeID id);
    std::optional<TreeChange> kindChange(NodeID id, NodeKind kind);
    std::optional<TreeChange> moveChange(NodeID id, std::int64_t offset) const;
    std::optional<TreeChange> removeChange(NodeID id) const;

    NaiveTree subtree(NodeID id) const;
    NodeID appendDetached(const NaiveTree& other);

private:
    NaiveNode& node(NodeID id) { return nodes_[static_cast<std::size_t>(id.raw)]; }
    NodeID copySubtree(const NaiveTree& source, NodeID top, std::optional<NodeID> parent);
    std::optional<TreeChange> place(NodeID added, std::string_view keyStem, NodeID target, bool inside);
    /// Where a node is that is not the top-level value and has a parent.
    std::optional<JSONTree::Position> placeOfMovable(NodeID id) const;
    std::optional<JSONTree::Position> placeAfter(NodeID id) const;

    std::vector<NaiveNode> nodes_;
};

/// Fails the test, naming the first difference, unless both hold the same nodes under the same ids, byte for
/// byte, detached ones included.
void expectSameNodes(const JSONTree& tree, const NaiveTree& model);

} // namespace quelm::test
