#pragma once

#include "JSONCore/JSONStyle.h"
#include "JSONCore/JSONTree.h"
#include "TextCore/SharedText.h"
#include "TextCore/TextRope.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

/// Tree to text: the only writer of JSON. Pure functions that never change the tree and walk it without recursion; they
/// may run on any thread over a tree that nobody changes meanwhile.
namespace quelm::JSONSerializer {

/// The UTF-8 bytes of the value at `from` (its own key is not written), or of the document's top-level value. Pretty
/// output ends with one line feed, compact output with none. Numbers and Booleans are written as the tree holds them.
/// `from` must be stored in `tree`. Throws std::bad_alloc.
SharedText serialize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style);

/// The same bytes in pieces of about a megabyte, given to `take` in order, for output that need not be in memory whole.
/// Each piece is valid during its call; what `take` throws ends the writing and is passed on.
void serialize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style,
               const std::function<void(std::string_view)>& take);

/// About how many bytes that is, rather more than fewer, for whoever makes room before. O(1).
std::size_t expectedSize(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style);

/// The bytes as text.
TextRope serializeToString(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style);

} // namespace quelm::JSONSerializer
