#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Models/NaiveParser.h"
#include "Tests/JSONCore/Models/NaiveTree.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;
using test::written;
using testing::ElementsAre;

TEST(JSONTreeSubtree, IsATreeOfItsOwnWithIdsInDocumentOrder) {
    const JSONTree tree = parsed(R"([0,{"a":[1,[2]],"b":"x"},3])");
    const JSONTree copy = tree.subtree(nodeAt(tree, {1}));
    EXPECT_EQ(written(copy), R"({"a":[1,[2]],"b":"x"})");
    EXPECT_EQ(copy.nodeCount(), 6);
    EXPECT_EQ(copy.storedNodeCount(), 7);
    EXPECT_EQ(copy.kind(JSONTree::holder), NodeKind::array);
    EXPECT_THAT(copy.children(JSONTree::holder), ElementsAre(NodeID{1}));
    EXPECT_THAT(copy.children(NodeID{1}), ElementsAre(NodeID{2}, NodeID{6}));
    EXPECT_THAT(copy.children(NodeID{2}), ElementsAre(NodeID{3}, NodeID{4}));
    EXPECT_THAT(copy.children(NodeID{4}), ElementsAre(NodeID{5}));
    copy.checkInvariants();
}

TEST(JSONTreeSubtree, KeepsTheKeyOfItsTop) {
    const JSONTree tree = parsed(R"({"a":1})");
    const JSONTree copy = tree.subtree(nodeAt(tree, {0}));
    EXPECT_EQ(copy.key(copy.root()), "a");
    EXPECT_EQ(written(copy), "1");
}

TEST(JSONTreeSubtree, OfTheTopLevelValueLeavesDetachedNodesBehind) {
    JSONTree tree = parsed("[1,[2,3],4]");
    tree.detach(nodeAt(tree, {1}));
    const JSONTree copy = tree.subtree(tree.root());
    EXPECT_EQ(copy, tree);
    EXPECT_EQ(copy.storedNodeCount(), 4);
}

TEST(JSONTreeSubtree, MayBeTakenFromADetachedNode) {
    JSONTree tree = parsed(R"({"a":[1,{"b":2}]})");
    const NodeID list = nodeAt(tree, {0});
    tree.detach(list);
    EXPECT_EQ(written(tree.subtree(list)), R"([1,{"b":2}])");
}

TEST(JSONTreeSubtree, DoesNotFollowChangesOfItsSource) {
    JSONTree tree = parsed(R"({"a":["x"]})");
    JSONTree copy = tree.subtree(nodeAt(tree, {0}));
    tree.apply(TreeEdit::setValue(nodeAt(tree, {0, 0}), NodeKind::null, ""));
    copy.apply(TreeEdit::setValue(nodeAt(copy, {0}), NodeKind::number, "7"));
    EXPECT_EQ(written(copy), "[7]");
    EXPECT_EQ(written(tree), R"({"a":[null]})");
}

TEST(JSONTreeSubtree, OutlivesItsSource) {
    auto tree =
        std::make_unique<JSONTree>(parsed(R"({"a":["un texto largo que vive en otra parte","con \n escape"]})"));
    tree->apply(TreeEdit::setKey(nodeAt(*tree, {0}), "una clave escrita después"));
    const JSONTree copy = tree->subtree(tree->root());
    tree.reset();
    EXPECT_EQ(written(copy),
              R"({"una clave escrita después":["un texto largo que vive en otra parte","con \n escape"]})");
}

TEST(JSONTreeSubtree, OfEditedTextsCopiesTheTextsInForce) {
    JSONTree tree = parsed(R"({"a":{"b":"c\t"}})");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {0, 0}), "nueva"));
    tree.apply(TreeEdit::setValue(nodeAt(tree, {0, 0}), NodeKind::string, "valor \"nuevo\""));
    EXPECT_EQ(written(tree.subtree(nodeAt(tree, {0}))), R"({"nueva":"valor \"nuevo\""})");
}

TEST(JSONTreeAppend, StoresACopyOfTheOtherDocumentDetached) {
    JSONTree tree = parsed("[1]");
    const JSONTree other = parsed(R"({"a":[true,{"b":null}],"c":"x"})");
    const NodeID top = tree.appendDetached(other);
    EXPECT_EQ(top, NodeID{3});
    EXPECT_EQ(tree.storedNodeCount(), 9);
    EXPECT_EQ(tree.nodeCount(), 2);
    EXPECT_EQ(tree.parent(top), std::nullopt);
    EXPECT_EQ(tree.subtreeSize(top), 6);
    EXPECT_EQ(written(tree, top), R"({"a":[true,{"b":null}],"c":"x"})");
    EXPECT_THAT(tree.children(NodeID{3}), ElementsAre(NodeID{4}, NodeID{8}));
    EXPECT_THAT(tree.children(NodeID{4}), ElementsAre(NodeID{5}, NodeID{6}));
    EXPECT_THAT(tree.children(NodeID{6}), ElementsAre(NodeID{7}));
    EXPECT_EQ(written(tree), "[1]");
    tree.checkInvariants();
}

TEST(JSONTreeAppend, OfItselfDoublesTheDocument) {
    JSONTree tree = parsed(R"({"a":[1,"x\n"]})");
    const NodeID top = tree.appendDetached(tree);
    tree.attach(top, nodeAt(tree, {0}), 2);
    EXPECT_EQ(written(tree), R"({"a":[1,"x\n",{"a":[1,"x\n"]}]})");
    tree.checkInvariants();
}

TEST(JSONTreeAppend, OutlivesTheOtherTree) {
    JSONTree tree = parsed("[]");
    {
        JSONTree other = parsed(R"(["plain text of some length","escaped\n"])");
        other.apply(TreeEdit::setValue(nodeAt(other, {0}), NodeKind::string, "edited text of some length"));
        tree.attach(tree.appendDetached(other), tree.root(), 0);
    }
    EXPECT_EQ(written(tree), R"([["edited text of some length","escaped\n"]])");
}

TEST(JSONTreeAppend, TakesManyTreesOfManyTexts) {
    JSONTree tree = parsed("[]");
    std::string expected = "[";
    for (int i = 0; i < 1'000; ++i) {
        const std::string part = "{\"k" + std::to_string(i) + "\":\"v" + std::to_string(i) + "\\t\"}";
        tree.attach(tree.appendDetached(parsed(part)), tree.root(), i);
        expected += (i ? "," : "") + part;
    }
    EXPECT_EQ(written(tree), expected + "]");
    tree.checkInvariants();
}

TEST(JSONTreeAppend, CopiesLargeContainersLikeSmallOnes) {
    std::string text = "{\"grande\":[0";
    for (int i = 1; i < 50'000; ++i)
        text += (i % 100 ? ",\"x" : ",\"\\n") + std::to_string(i) + "\"";
    text += "],\"mil\":{\"0\":0";
    for (int i = 1; i < 10'000; ++i)
        text += ",\"" + std::to_string(i) + "\":[" + std::to_string(i) + "]";
    text += "}}";
    const JSONTree source = parsed(text);
    const auto model = test::naiveParse(text);
    ASSERT_TRUE(model);
    test::expectSameNodes(source.subtree(source.root()), model->subtree(model->root()));
    JSONTree tree = parsed("[1]");
    test::NaiveTree expected = *test::naiveParse("[1]");
    tree.attach(tree.appendDetached(source), tree.root(), 0);
    expected.attach(expected.appendDetached(*model), expected.root(), 0);
    test::expectSameNodes(tree, expected);
    tree.checkInvariants();
}

} // namespace
} // namespace quelm
