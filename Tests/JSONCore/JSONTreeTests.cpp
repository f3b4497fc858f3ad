#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <type_traits>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;
using test::written;

TEST(JSONTree, OfOneValueHasTheHolderAndThatValue) {
    for (const NodeKind kind : allNodeKinds) {
        const std::string_view scalar = isContainer(kind) ? "" : "true";
        const JSONTree tree(kind, scalar);
        EXPECT_EQ(tree.storedNodeCount(), 2);
        EXPECT_EQ(tree.nodeCount(), 1);
        EXPECT_EQ(tree.root(), NodeID{1});
        EXPECT_EQ(tree.kind(tree.root()), kind);
        EXPECT_EQ(tree.scalar(tree.root()), scalar);
        EXPECT_EQ(tree.key(tree.root()), "");
        EXPECT_TRUE(tree.children(tree.root()).empty());
        EXPECT_EQ(tree.parent(tree.root()), JSONTree::holder);
        EXPECT_EQ(tree.path(tree.root()), "$");
        EXPECT_EQ(tree.kind(JSONTree::holder), NodeKind::array);
        EXPECT_EQ(tree.key(JSONTree::holder), "");
        EXPECT_EQ(tree.scalar(JSONTree::holder), "");
        EXPECT_EQ(tree.parent(JSONTree::holder), std::nullopt);
        EXPECT_THAT(tree.children(JSONTree::holder), testing::ElementsAre(NodeID{1}));
        tree.checkInvariants();
    }
}

TEST(JSONTree, GivesTheTextsOfANodeAlsoWithSharedOwnership) {
    SharedText key;
    SharedText escapedKey;
    SharedText scalar;
    SharedText edited;
    {
        JSONTree tree = parsed(R"({"clave":"valor","escapada\n":1})");
        tree.apply(TreeEdit::setValue(nodeAt(tree, {1}), NodeKind::string, std::string(100, 'e')));
        key = tree.sharedKey(nodeAt(tree, {0}));
        scalar = tree.sharedScalar(nodeAt(tree, {0}));
        escapedKey = tree.sharedKey(nodeAt(tree, {1}));
        edited = tree.sharedScalar(nodeAt(tree, {1}));
        EXPECT_TRUE(tree.sharedKey(tree.root()).empty());
        EXPECT_TRUE(tree.sharedScalar(tree.root()).empty());
    }
    EXPECT_EQ(key.view(), "clave");
    EXPECT_EQ(scalar.view(), "valor");
    EXPECT_EQ(escapedKey.view(), "escapada\n");
    EXPECT_EQ(edited.view(), std::string(100, 'e'));
}

TEST(JSONTree, KeepsViewsOfItsTextsValidThroughChanges) {
    JSONTree tree = parsed(R"({"clave":"valor","escapada\n":"con \t"})");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {0}), "nueva"));
    const std::string_view edited = tree.key(nodeAt(tree, {0}));
    const std::string_view plain = tree.scalar(nodeAt(tree, {0}));
    const std::string_view escaped = tree.key(nodeAt(tree, {1}));
    for (int i = 0; i < 20'000; ++i) {
        tree.apply(TreeEdit::setKey(nodeAt(tree, {0}), "clave número " + std::to_string(i)));
        tree.apply(TreeEdit::setValue(nodeAt(tree, {1}), NodeKind::string, std::to_string(i)));
        tree.addNode(NodeKind::string, "k", "v");
    }
    const JSONTree copy = tree;
    tree = parsed("[]");
    EXPECT_EQ(edited, "nueva");
    EXPECT_EQ(plain, "valor");
    EXPECT_EQ(escaped, "escapada\n");
}

TEST(JSONTree, KnowsThePositionOfANodeAmongItsSiblings) {
    const JSONTree tree = parsed(R"({"a":[10,20,30],"b":null})");
    EXPECT_EQ(tree.indexInParent(tree.root()), 0);
    EXPECT_EQ(tree.indexInParent(nodeAt(tree, {0})), 0);
    EXPECT_EQ(tree.indexInParent(nodeAt(tree, {0, 2})), 2);
    EXPECT_EQ(tree.indexInParent(nodeAt(tree, {1})), 1);
    EXPECT_EQ(tree.indexInParent(JSONTree::holder), std::nullopt);
}

TEST(JSONTree, KnowsTheMembersOfObjects) {
    JSONTree tree = parsed(R"({"a":[1],"b":{}})");
    EXPECT_TRUE(tree.isObjectMember(nodeAt(tree, {0})));
    EXPECT_TRUE(tree.isObjectMember(nodeAt(tree, {1})));
    EXPECT_FALSE(tree.isObjectMember(nodeAt(tree, {0, 0})));
    EXPECT_FALSE(tree.isObjectMember(tree.root()));
    EXPECT_FALSE(tree.isObjectMember(JSONTree::holder));
    const NodeID detached = nodeAt(tree, {1});
    tree.detach(detached);
    EXPECT_FALSE(tree.isObjectMember(detached));
}

TEST(JSONTree, CountsTheNodesOfASubtreeItsTopIncluded) {
    const JSONTree tree = parsed(R"({"a":[1,[2,3],{}],"b":null})");
    EXPECT_EQ(tree.nodeCount(), 8);
    EXPECT_EQ(tree.subtreeSize(tree.root()), 8);
    EXPECT_EQ(tree.subtreeSize(nodeAt(tree, {0})), 6);
    EXPECT_EQ(tree.subtreeSize(nodeAt(tree, {0, 1})), 3);
    EXPECT_EQ(tree.subtreeSize(nodeAt(tree, {0, 2})), 1);
    EXPECT_EQ(tree.subtreeSize(nodeAt(tree, {1})), 1);
}

TEST(JSONTree, AddsNodesDetached) {
    JSONTree tree = parsed("[1]");
    const NodeID added = tree.addNode(NodeKind::string, "clave", "valor");
    EXPECT_EQ(added, NodeID{3});
    EXPECT_EQ(tree.storedNodeCount(), 4);
    EXPECT_EQ(tree.nodeCount(), 2);
    EXPECT_EQ(tree.kind(added), NodeKind::string);
    EXPECT_EQ(tree.key(added), "clave");
    EXPECT_EQ(tree.scalar(added), "valor");
    EXPECT_EQ(tree.parent(added), std::nullopt);
    EXPECT_EQ(tree.indexInParent(added), std::nullopt);
    EXPECT_EQ(tree.subtreeSize(added), 1);
    EXPECT_EQ(tree.path(added), "$");
    tree.checkInvariants();
}

TEST(JSONTree, AttachesAtAnyPositionAndTellsTheSize) {
    JSONTree tree = parsed("[1,2]");
    const NodeID pair = tree.addNode(NodeKind::array, "", "");
    EXPECT_EQ(tree.attach(tree.addNode(NodeKind::number, "", "7"), pair, 0), 1);
    EXPECT_EQ(tree.nodeCount(), 3);
    EXPECT_EQ(tree.attach(pair, tree.root(), 1), 2);
    EXPECT_EQ(tree.nodeCount(), 5);
    EXPECT_EQ(written(tree), "[1,[7],2]");
    EXPECT_EQ(tree.parent(pair), tree.root());
    EXPECT_EQ(tree.attach(tree.addNode(NodeKind::null, "", ""), tree.root(), 0), 1);
    EXPECT_EQ(tree.attach(tree.addNode(NodeKind::null, "", ""), tree.root(), 4), 1);
    EXPECT_EQ(written(tree), "[null,1,[7],2,null]");
    tree.checkInvariants();
}

TEST(JSONTree, DetachesAWholeSubtreeAndTakesItBack) {
    JSONTree tree = parsed(R"({"x":0,"a":{"b":[1,2],"c":null},"y":0})");
    const JSONTree before = tree;
    const NodeID subtree = nodeAt(tree, {1});
    ASSERT_EQ(tree.subtreeSize(subtree), 5);
    const std::int64_t stored = tree.storedNodeCount();

    const auto position = tree.detach(subtree);
    EXPECT_EQ(position, (JSONTree::Position{tree.root(), 1}));
    EXPECT_EQ(tree.nodeCount(), before.nodeCount() - 5);
    EXPECT_EQ(tree.storedNodeCount(), stored);
    EXPECT_EQ(tree.parent(subtree), std::nullopt);
    EXPECT_EQ(tree.subtreeSize(subtree), 5);
    EXPECT_EQ(tree.key(subtree), "a");
    EXPECT_EQ(written(tree, subtree), R"({"b":[1,2],"c":null})");
    EXPECT_EQ(written(tree), R"({"x":0,"y":0})");
    EXPECT_EQ(tree.indexInParent(nodeAt(tree, {1})), 1);
    EXPECT_NE(tree, before);
    tree.checkInvariants();

    EXPECT_EQ(tree.attach(subtree, position->parent, position->index), 5);
    EXPECT_EQ(tree, before);
    EXPECT_EQ(tree.nodeCount(), before.nodeCount());
    EXPECT_EQ(tree.storedNodeCount(), stored);
    tree.checkInvariants();
}

TEST(JSONTree, DetachingWhatHasNoParentChangesNothing) {
    JSONTree tree = parsed("[1,2]");
    const NodeID child = nodeAt(tree, {0});
    tree.detach(child);
    const JSONTree before = tree;
    EXPECT_EQ(tree.detach(child), std::nullopt);
    EXPECT_EQ(tree.detach(JSONTree::holder), std::nullopt);
    EXPECT_EQ(tree, before);
    EXPECT_EQ(tree.nodeCount(), 2);
}

TEST(JSONTree, MayLoseAndRegainItsTopLevelValue) {
    JSONTree tree = parsed("[1,2]");
    const JSONTree before = tree;
    const NodeID root = tree.root();
    EXPECT_EQ(tree.detach(root), (JSONTree::Position{JSONTree::holder, 0}));
    EXPECT_EQ(tree.nodeCount(), 0);
    EXPECT_TRUE(tree.children(JSONTree::holder).empty());
    EXPECT_EQ(tree.detach(root), std::nullopt);
    tree.attach(root, JSONTree::holder, 0);
    EXPECT_EQ(tree, before);
    EXPECT_EQ(tree.nodeCount(), 3);
}

TEST(JSONTree, CountsOnlyNodesThatHangBelowTheHolder) {
    JSONTree tree = parsed("[[1],2]");
    const NodeID list = nodeAt(tree, {0});
    tree.detach(list);
    EXPECT_EQ(tree.nodeCount(), 2);
    EXPECT_EQ(tree.attach(tree.addNode(NodeKind::null, "", ""), list, 0), 1);
    EXPECT_EQ(tree.nodeCount(), 2);
    EXPECT_EQ(tree.subtreeSize(list), 3);
    tree.detach(tree.children(list)[1]);
    EXPECT_EQ(tree.nodeCount(), 2);
    EXPECT_EQ(tree.attach(list, tree.root(), 1), 2);
    EXPECT_EQ(tree.nodeCount(), 4);
    EXPECT_EQ(written(tree), "[2,[null]]");
    tree.checkInvariants();
}

TEST(JSONTree, IsCopiedAndMovedWithoutThrowing) {
    static_assert(std::is_copy_constructible_v<JSONTree> && std::is_copy_assignable_v<JSONTree>);
    static_assert(std::is_nothrow_move_constructible_v<JSONTree> && std::is_nothrow_move_assignable_v<JSONTree>);
    JSONTree tree = parsed("[1,2]");
    JSONTree moved = std::move(tree);
    EXPECT_EQ(written(moved), "[1,2]");
    tree = moved;
    moved.apply(TreeEdit::remove(nodeAt(moved, {0})));
    EXPECT_EQ(written(tree), "[1,2]");
    EXPECT_EQ(written(moved), "[2]");
    const JSONTree& same = tree;
    tree = same;
    EXPECT_EQ(written(tree), "[1,2]");
}

} // namespace
} // namespace quelm
