#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/NodeSet.h"
#include "JSONCore/OutlineRows.h"

namespace quelm {

/// The rows of the visible subtree at `id`: its own at the given depth, and below it those of every child of an
/// expanded container. Large objects among the expanded get their key index, so that drawing their rows does not wait
/// for it. No recursion.
OutlineRows::Sequence visibleRows(NodeID id, std::uint32_t depth, const NodeSet& expanded, const JSONTree& tree);

} // namespace quelm
