#pragma once

#include "JSONCore/JSONTree.h"

#include <QString>

#include <cstddef>

namespace quelm {

/// The end of a value's place in the document (`JSONTree::path`), fit to be painted in one line: no more than the last
/// `bytes` of its UTF-8, after "…" when there is more. The node must be linked below the holder. The cost does not
/// depend on the depth, but for a position in each array that is told, and only a long key is looked through as a
/// whole, to know whether it needs quotes.
QString pathTail(const JSONTree& tree, NodeID id, std::size_t bytes);

} // namespace quelm
