#pragma once

#include "JSONCore/TreeOutline.h"

#include <string>

namespace quelm::test {

/// All rows of an outline, a line each, as `describe(TreeRow)` writes them. Checks that every row is found by
/// its id, and the outline's invariants.
std::string rowsText(const TreeOutline& outline, const JSONTree& tree);

} // namespace quelm::test
