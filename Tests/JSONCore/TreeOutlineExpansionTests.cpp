#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/OpenedOutline.h"
#include "Tests/JSONCore/Support/OutlineText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::nodeAt;
using test::Opened;
using test::parsed;
using test::rowsText;

TEST(TreeOutlineExpansion, ExpandsAndCollapsesOneContainer) {
    Opened opened("[[1,[2]],3]");
    opened.expand({0});
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] array 2 open\n    [0] number 1\n    [1] array 1\n  [1] number 3\n");
    opened.expand({0});
    EXPECT_EQ(opened.outline.rowCount(), 5);
    opened.collapse({0});
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] array 2\n  [1] number 3\n");
    opened.collapse({});
    EXPECT_EQ(opened.rows(), "$ array 2\n");
    opened.expand({});
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] array 2\n  [1] number 3\n");
}

TEST(TreeOutlineExpansion, RemembersWhatWasExpandedBelowACollapsedContainer) {
    Opened opened("[[[1]]]");
    opened.expand({0});
    opened.expand({0, 0});
    const std::string open = opened.rows();
    opened.collapse({});
    EXPECT_EQ(opened.rows(), "$ array 1\n");
    opened.expand({});
    EXPECT_EQ(opened.rows(), open);
}

TEST(TreeOutlineExpansion, ExpandsAContainerThatHasNoRowYet) {
    Opened opened("[[[1]]]");
    opened.expand({0, 0});
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] array 1\n");
    opened.expand({0});
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] array 1 open\n    [0] array 1 open\n      [0] number 1\n");
}

TEST(TreeOutlineExpansion, ExpandsAllContainersBelowRecursively) {
    Opened opened(R"([{"a":[1,{"b":{}}]},2,[3]])");
    opened.expandAll({0});
    EXPECT_EQ(opened.rows(), "$ array 3 open\n"
                             "  [0] object 1 open\n"
                             "    \"a\" array 2 open\n"
                             "      [0] number 1\n"
                             "      [1] object 1 open\n"
                             "        \"b\" object 0 open\n"
                             "  [1] number 2\n"
                             "  [2] array 1\n");
    EXPECT_EQ(opened.outline.expanded().size(), 5);
    EXPECT_FALSE(opened.outline.expanded().contains(opened.at({1})));
}

TEST(TreeOutlineExpansion, CollapsesAllContainersBelowRecursively) {
    Opened opened(R"([{"a":[1,{"b":{}}]},2])");
    opened.expandAll({});
    opened.collapseAll({0});
    opened.expand({0});
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] object 1 open\n    \"a\" array 2\n  [1] number 2\n");
    opened.collapseAll({});
    EXPECT_EQ(opened.rows(), "$ array 2\n");
    EXPECT_TRUE(opened.outline.expanded().empty());
}

TEST(TreeOutlineExpansion, NeverExpandsAScalar) {
    Opened opened("[1]");
    opened.expand({0});
    opened.expandAll({0});
    EXPECT_FALSE(opened.outline.expanded().contains(opened.at({0})));
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] number 1\n");
}

TEST(TreeOutlineExpansion, RevealsANodeByExpandingItsAncestors) {
    Opened opened(R"({"a":[[1],[2]],"b":{"c":3}})");
    opened.outline.reveal(opened.at({0, 1, 0}), opened.tree);
    EXPECT_EQ(opened.rows(), "$ object 2 open\n"
                             "  \"a\" array 2 open\n"
                             "    [0] array 1\n"
                             "    [1] array 1 open\n"
                             "      [0] number 2\n"
                             "  \"b\" object 1\n");
    EXPECT_EQ(opened.outline.index(opened.at({0, 1, 0})), 4);
}

TEST(TreeOutlineExpansion, RevealingDoesNotExpandTheNodeItself) {
    Opened opened("[[[1]]]");
    opened.outline.reveal(opened.at({0, 0}), opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] array 1 open\n    [0] array 1\n");
}

TEST(TreeOutlineExpansion, RevealsBelowACollapsedTopLevelValue) {
    Opened opened("[[1]]");
    opened.collapse({});
    opened.outline.reveal(opened.at({0, 0}), opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] array 1 open\n    [0] number 1\n");
}

TEST(TreeOutlineExpansion, RevealingWhatIsVisibleChangesNothing) {
    Opened opened("[[1]]");
    const std::string before = opened.rows();
    opened.outline.reveal(opened.tree.root(), opened.tree);
    opened.outline.reveal(opened.at({0}), opened.tree);
    opened.outline.reveal(JSONTree::holder, opened.tree);
    EXPECT_EQ(opened.rows(), before);
}

TEST(TreeOutlineExpansion, RevealsInAnOutlineThatHasNoRowsYet) {
    const JSONTree tree = parsed("[[1]]");
    TreeOutline outline;
    outline.reveal(nodeAt(tree, {0, 0}), tree);
    EXPECT_EQ(rowsText(outline, tree), "$ array 1 open\n  [0] array 1 open\n    [0] number 1\n");
}

TEST(TreeOutlineExpansion, RevealingADetachedNodeShowsNothing) {
    Opened opened("[[[1]]]");
    const NodeID list = opened.at({0});
    const NodeID inner = opened.at({0, 0});
    const std::vector<TreeEdit> edits{TreeEdit::remove(list)};
    std::vector<TreeEdit> all = edits;
    for (const TreeEdit& inverse : opened.tree.apply(edits))
        all.push_back(inverse);
    opened.outline.update(all, opened.tree);
    opened.outline.reveal(opened.tree.children(inner)[0], opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 0 open\n");
}

} // namespace
} // namespace quelm
