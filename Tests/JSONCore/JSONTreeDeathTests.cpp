#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/JSONText.h"

#include <gtest/gtest.h>
#include <limits>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;

/// What the check prints before it stops the process; a crash of another sort prints none.
constexpr const char* stopped = "programming error";

class JSONTreeDeathTest : public testing::Test {
protected:
    JSONTree tree_ = parsed(R"({"a":1,"b":[2,3],"c":{"d":4}})");
    NodeID number_ = nodeAt(tree_, {0});
    NodeID list_ = nodeAt(tree_, {1});
    NodeID object_ = nodeAt(tree_, {2});
};

TEST_F(JSONTreeDeathTest, EveryReadingStopsAtAnIdOutsideTheStore) {
    for (const std::int32_t raw :
         {-1, 8, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        const NodeID id{raw};
        EXPECT_DEATH(tree_.kind(id), stopped);
        EXPECT_DEATH(tree_.key(id), stopped);
        EXPECT_DEATH(tree_.scalar(id), stopped);
        EXPECT_DEATH(tree_.sharedKey(id), stopped);
        EXPECT_DEATH(tree_.sharedScalar(id), stopped);
        EXPECT_DEATH(tree_.children(id), stopped);
        EXPECT_DEATH(tree_.parent(id), stopped);
        EXPECT_DEATH(tree_.indexInParent(id), stopped);
        EXPECT_DEATH(tree_.isObjectMember(id), stopped);
        EXPECT_DEATH(tree_.subtreeSize(id), stopped);
        EXPECT_DEATH(tree_.path(id), stopped);
        EXPECT_DEATH(tree_.keyOccurrences(id, "a"), stopped);
        EXPECT_DEATH(tree_.prepareKeyIndex(id), stopped);
        EXPECT_DEATH(tree_.uniqueKey("a", id), stopped);
        EXPECT_DEATH(tree_.subtree(id), stopped);
    }
}

TEST_F(JSONTreeDeathTest, EveryChangeStopsAtAnIdOutsideTheStore) {
    const JSONTree pasted = parsed("1");
    for (const NodeID id : {NodeID{-1}, NodeID{8}}) {
        EXPECT_DEATH(tree_.attach(id, list_, 0), stopped);
        EXPECT_DEATH(tree_.detach(id), stopped);
        EXPECT_DEATH(tree_.apply(TreeEdit::setKey(id, "a")), stopped);
        EXPECT_DEATH(tree_.apply(TreeEdit::setValue(id, NodeKind::null, "")), stopped);
        EXPECT_DEATH(tree_.apply(TreeEdit::insert(id, list_, 0)), stopped);
        EXPECT_DEATH(tree_.apply(TreeEdit::remove(id)), stopped);
        EXPECT_DEATH(tree_.insertChange(id, true), stopped);
        EXPECT_DEATH(tree_.insertChange(id, false), stopped);
        EXPECT_DEATH(tree_.pasteChange(pasted, NodeID{100}, true), stopped);
        EXPECT_DEATH(tree_.duplicateChange(id), stopped);
        EXPECT_DEATH(tree_.kindChange(id, NodeKind::null), stopped);
        EXPECT_DEATH(tree_.moveChange(id, 1), stopped);
        EXPECT_DEATH(tree_.removeChange(id), stopped);
    }
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAParentOutsideTheStore) {
    const NodeID added = tree_.addNode(NodeKind::null, "", "");
    EXPECT_DEATH(tree_.attach(added, NodeID{-1}, 0), stopped);
    EXPECT_DEATH(tree_.attach(added, NodeID{99}, 0), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::insert(added, NodeID{99}, 0)), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAnIndexOutsideTheChildList) {
    const NodeID added = tree_.addNode(NodeKind::null, "", "");
    EXPECT_DEATH(tree_.attach(added, list_, -1), stopped);
    EXPECT_DEATH(tree_.attach(added, list_, 3), stopped);
    EXPECT_DEATH(tree_.attach(added, list_, std::numeric_limits<std::int64_t>::max()), stopped);
    EXPECT_DEATH(tree_.attach(added, list_, std::numeric_limits<std::int64_t>::min()), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::insert(added, list_, -1)), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::insert(added, list_, 3)), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAParentThatIsNoContainer) {
    const NodeID added = tree_.addNode(NodeKind::null, "", "");
    EXPECT_DEATH(tree_.attach(added, number_, 0), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtANodeThatIsLinkedAlready) {
    EXPECT_DEATH(tree_.attach(number_, list_, 0), stopped);
    EXPECT_DEATH(tree_.attach(tree_.root(), list_, 0), stopped);
    EXPECT_DEATH(tree_.attach(JSONTree::holder, list_, 0), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAParentInTheNodesOwnSubtree) {
    const NodeID root = tree_.root();
    tree_.detach(root);
    EXPECT_DEATH(tree_.attach(root, root, 0), stopped);
    EXPECT_DEATH(tree_.attach(root, object_, 0), stopped);
}

TEST_F(JSONTreeDeathTest, ARemovalStopsAtANodeWithoutParent) {
    tree_.detach(number_);
    EXPECT_DEATH(tree_.apply(TreeEdit::remove(number_)), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::remove(JSONTree::holder)), stopped);
}

TEST_F(JSONTreeDeathTest, ANewValueStopsAtContainers) {
    EXPECT_DEATH(tree_.apply(TreeEdit::setValue(list_, NodeKind::string, "")), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::setValue(object_, NodeKind::array, "")), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::setValue(number_, NodeKind::array, "")), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::setValue(number_, NodeKind::object, "")), stopped);
    EXPECT_DEATH(tree_.apply(TreeEdit::setValue(JSONTree::holder, NodeKind::null, "")), stopped);
}

TEST_F(JSONTreeDeathTest, AskingForAMissingTopLevelValueStops) {
    tree_.detach(tree_.root());
    EXPECT_DEATH(tree_.root(), stopped);
    EXPECT_DEATH(parsed("1").appendDetached(tree_), stopped);
    EXPECT_DEATH(parsed("[1]").pasteChange(tree_, NodeID{1}, true), stopped);
}

TEST_F(JSONTreeDeathTest, AFailedCheckSaysWhatWasViolated) {
    EXPECT_DEATH(tree_.kind(NodeID{8}), "a node id is stored in the tree");
    EXPECT_DEATH(tree_.attach(tree_.addNode(NodeKind::null, "", ""), list_, 3), "inserted within its parent's list");
}

} // namespace
} // namespace quelm
