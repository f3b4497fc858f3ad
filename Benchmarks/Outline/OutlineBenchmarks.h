#pragma once

#include "Benchmarks/Outline/OutlineDocument.h"

#include <string>
#include <string_view>

/// Each measures one side of the outline and prints its lines. The document is as it was afterwards, but for
/// detached nodes in its store.
namespace quelm::bench {

/// As in "outline/expand-all/5M-rows".
inline std::string outlineLabel(std::string_view measurement, std::string_view where) {
    return "outline/" + std::string(measurement) + "/" + std::string(where);
}

/// Making all rows: first rows, expanding and collapsing, and what the rows take in memory.
void measureRowBuilding(const OutlineDocument& document);

/// Asking a fully expanded outline for rows, screens of rows and the rows of nodes.
void measureRowAccess(const OutlineDocument& document);

/// Edits of the tree with the update of its fully expanded outline, and their undo, at the front, in the
/// middle and at the end of the large array and the large object.
void measureEdits(OutlineDocument& document);

} // namespace quelm::bench
