#pragma once

#include "Tests/JSONCore/Models/EditedDocument.h"
#include "Tests/JSONCore/Support/Random.h"

namespace quelm::test {

/// Does something at random that a user may do in a tree: an edit of any sort, undo, redo, expanding,
/// collapsing, revealing; now and then something that only a program would do. `largestCopy` bounds the
/// subtrees that are duplicated.
void takeRandomStep(EditedDocument& document, Random& random, std::int64_t largestCopy);

/// A node below the top-level value or that itself; seldom one that was detached.
NodeID randomNode(const EditedDocument& document, Random& random);

} // namespace quelm::test
