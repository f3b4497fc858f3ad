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
    JSONTree tree = parsed(R"({"a":1,"b":[2,3],"c":{"d":4}})");
    NodeID number = nodeAt(tree, {0});
    NodeID list = nodeAt(tree, {1});
    NodeID object = nodeAt(tree, {2});
};

TEST_F(JSONTreeDeathTest, EveryReadingStopsAtAnIdOutsideTheStore) {
    for (const std::int32_t raw :
         {-1, 8, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        const NodeID id{raw};
        EXPECT_DEATH(tree.kind(id), stopped);
        EXPECT_DEATH(tree.key(id), stopped);
        EXPECT_DEATH(tree.scalar(id), stopped);
        EXPECT_DEATH(tree.sharedKey(id), stopped);
        EXPECT_DEATH(tree.sharedScalar(id), stopped);
        EXPECT_DEATH(tree.children(id), stopped);
        EXPECT_DEATH(tree.parent(id), stopped);
        EXPECT_DEATH(tree.indexInParent(id), stopped);
        EXPECT_DEATH(tree.isObjectMember(id), stopped);
        EXPECT_DEATH(tree.subtreeSize(id), stopped);
        EXPECT_DEATH(tree.path(id), stopped);
        EXPECT_DEATH(tree.keyOccurrences(id, "a"), stopped);
        EXPECT_DEATH(tree.prepareKeyIndex(id), stopped);
        EXPECT_DEATH(tree.uniqueKey("a", id), stopped);
        EXPECT_DEATH(tree.subtree(id), stopped);
    }
}

TEST_F(JSONTreeDeathTest, EveryChangeStopsAtAnIdOutsideTheStore) {
    const JSONTree pasted = parsed("1");
    for (const NodeID id : {NodeID{-1}, NodeID{8}}) {
        EXPECT_DEATH(tree.attach(id, list, 0), stopped);
        EXPECT_DEATH(tree.detach(id), stopped);
        EXPECT_DEATH(tree.apply(TreeEdit::setKey(id, "a")), stopped);
        EXPECT_DEATH(tree.apply(TreeEdit::setValue(id, NodeKind::null, "")), stopped);
        EXPECT_DEATH(tree.apply(TreeEdit::insert(id, list, 0)), stopped);
        EXPECT_DEATH(tree.apply(TreeEdit::remove(id)), stopped);
        EXPECT_DEATH(tree.insertChange(id, true), stopped);
        EXPECT_DEATH(tree.insertChange(id, false), stopped);
        EXPECT_DEATH(tree.pasteChange(pasted, NodeID{100}, true), stopped);
        EXPECT_DEATH(tree.duplicateChange(id), stopped);
        EXPECT_DEATH(tree.kindChange(id, NodeKind::null), stopped);
        EXPECT_DEATH(tree.moveChange(id, 1), stopped);
        EXPECT_DEATH(tree.removeChange(id), stopped);
    }
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAParentOutsideTheStore) {
    const NodeID added = tree.addNode(NodeKind::null, "", "");
    EXPECT_DEATH(tree.attach(added, NodeID{-1}, 0), stopped);
    EXPECT_DEATH(tree.attach(added, NodeID{99}, 0), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::insert(added, NodeID{99}, 0)), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAnIndexOutsideTheChildList) {
    const NodeID added = tree.addNode(NodeKind::null, "", "");
    EXPECT_DEATH(tree.attach(added, list, -1), stopped);
    EXPECT_DEATH(tree.attach(added, list, 3), stopped);
    EXPECT_DEATH(tree.attach(added, list, std::numeric_limits<std::int64_t>::max()), stopped);
    EXPECT_DEATH(tree.attach(added, list, std::numeric_limits<std::int64_t>::min()), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::insert(added, list, -1)), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::insert(added, list, 3)), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAParentThatIsNoContainer) {
    const NodeID added = tree.addNode(NodeKind::null, "", "");
    EXPECT_DEATH(tree.attach(added, number, 0), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtANodeThatIsLinkedAlready) {
    EXPECT_DEATH(tree.attach(number, list, 0), stopped);
    EXPECT_DEATH(tree.attach(tree.root(), list, 0), stopped);
    EXPECT_DEATH(tree.attach(JSONTree::holder, list, 0), stopped);
}

TEST_F(JSONTreeDeathTest, AnInsertionStopsAtAParentInTheNodesOwnSubtree) {
    const NodeID root = tree.root();
    tree.detach(root);
    EXPECT_DEATH(tree.attach(root, root, 0), stopped);
    EXPECT_DEATH(tree.attach(root, object, 0), stopped);
}

TEST_F(JSONTreeDeathTest, ARemovalStopsAtANodeWithoutParent) {
    tree.detach(number);
    EXPECT_DEATH(tree.apply(TreeEdit::remove(number)), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::remove(JSONTree::holder)), stopped);
}

TEST_F(JSONTreeDeathTest, ANewValueStopsAtContainers) {
    EXPECT_DEATH(tree.apply(TreeEdit::setValue(list, NodeKind::string, "")), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::setValue(object, NodeKind::array, "")), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::setValue(number, NodeKind::array, "")), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::setValue(number, NodeKind::object, "")), stopped);
    EXPECT_DEATH(tree.apply(TreeEdit::setValue(JSONTree::holder, NodeKind::null, "")), stopped);
}

TEST_F(JSONTreeDeathTest, AskingForAMissingTopLevelValueStops) {
    tree.detach(tree.root());
    EXPECT_DEATH(tree.root(), stopped);
    EXPECT_DEATH(parsed("1").appendDetached(tree), stopped);
    EXPECT_DEATH(parsed("[1]").pasteChange(tree, NodeID{1}, true), stopped);
}

TEST_F(JSONTreeDeathTest, AFailedCheckSaysWhatWasViolated) {
    EXPECT_DEATH(tree.kind(NodeID{8}), "a node id is stored in the tree");
    EXPECT_DEATH(tree.attach(tree.addNode(NodeKind::null, "", ""), list, 3), "inserted within its parent's list");
}

} // namespace
} // namespace quelm
