#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/TreeOutline.h"

#include <optional>
#include <stop_token>

namespace quelm {

/// Finds for the nodes of one tree those of another that stand at the same place: below the counterpart of the parent,
/// under the same key in an object (the nth of equal keys for the nth) or at the same index in an array. Both trees
/// must outlive it unchanged. For one thread at a time.
class TreeCounterparts {
public:
    TreeCounterparts(const JSONTree& tree, const JSONTree& other) : tree_(tree), other_(other) {}

    /// Absent when there is none, and for a detached node. O(siblings on the way to the node).
    std::optional<NodeID> find(NodeID node) const;

    /// The same for the node or, if need be, its lowest ancestor that has one; the other top-level value as a last
    /// resort.
    NodeID findNearest(NodeID node) const;

    /// An outline of the other tree in which the counterparts of expanded containers are expanded, whether they have
    /// rows or not. O(children of expanded containers, and rows); of all containers when there are expanded ones below
    /// collapsed ones. When asked to stop it returns soon, with an outline of no meaning.
    TreeOutline outline(const TreeOutline& of, const std::stop_token& stop = {}) const;

private:
    struct Pair {
        NodeID node;
        NodeID other;
    };
    /// The ways down to the node, as far as both trees go: from the top-level values on.
    struct Descent {
        NodeID other;
        bool isWhole;
    };
    std::optional<Descent> descend(NodeID node) const;
    std::optional<NodeID> childLike(NodeID child, Pair parents) const;

    const JSONTree& tree_;
    const JSONTree& other_;
};

} // namespace quelm
