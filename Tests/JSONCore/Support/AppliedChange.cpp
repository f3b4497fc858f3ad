#include "Tests/JSONCore/Support/AppliedChange.h"

#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm::test {

std::string applied(JSONTree& tree, const std::optional<TreeChange>& change,
                    std::initializer_list<std::int64_t> focus) {
    if (!change) {
        ADD_FAILURE() << "there is no change";
        return "";
    }
    const JSONTree before = tree;
    const std::vector<TreeEdit> inverses = tree.apply(change->edits);
    const JSONTree after = tree;
    EXPECT_EQ(tree.apply(inverses), change->edits);
    EXPECT_EQ(tree, before);
    EXPECT_EQ(tree.nodeCount(), before.nodeCount());
    EXPECT_EQ(tree.apply(change->edits), inverses);
    EXPECT_EQ(tree, after);
    EXPECT_EQ(tree.nodeCount(), after.nodeCount());
    EXPECT_EQ(change->focus, nodeAt(tree, focus));
    tree.checkInvariants();
    return written(tree);
}

} // namespace quelm::test
