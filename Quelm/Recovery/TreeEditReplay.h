#pragma once

#include "JSONCore/JSONTree.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/ReplayError.h"

#include <cstdint>
#include <expected>
#include <stop_token>
#include <unordered_map>

namespace quelm {

/// The detached nodes of a tree under the numbers that a journal gave them.
using DetachedNodes = std::unordered_map<std::int64_t, NodeID>;

/// The tree after the edits, whatever they say; it has a top-level value. `detached`, of the same tree, is brought up
/// to date with them; after an error it is of no use any more. Throws std::bad_alloc, and std::length_error when the
/// tree has no room left. What it costs follows the edits.
std::expected<JSONTree, ReplayError> repeatTreeEdits(JSONTree tree, const journal::EditTree& edits,
                                                     DetachedNodes& detached, const std::stop_token& stop);

} // namespace quelm
