#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/AppliedChange.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::applied;
using test::nodeAt;
using test::parsed;
using test::written;

TEST(JSONTreeInsert, BesideAMemberAddsItsNextSibling) {
    JSONTree tree = parsed(R"({"a":{"x":1},"b":2})");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {0}), false), {1}), R"({"a":{"x":1},"clave":"","b":2})");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {0}), false), {1}),
              R"({"a":{"x":1},"clave 2":"","clave":"","b":2})");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {3}), false), {4}),
              R"({"a":{"x":1},"clave 2":"","clave":"","b":2,"clave 3":""})");
}

TEST(JSONTreeInsert, BesideAnElementAddsItsNextSiblingWithoutKey) {
    JSONTree tree = parsed("[1,[],2]");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {1}), false), {2}), R"([1,[],"",2])");
    EXPECT_EQ(tree.key(nodeAt(tree, {2})), "");
}

TEST(JSONTreeInsert, BesideTheTopLevelContainerAddsItsLastChild) {
    JSONTree array = parsed("[1]");
    EXPECT_EQ(applied(array, array.insertChange(array.root(), false), {1}), R"([1,""])");
    JSONTree object = parsed(R"({"a":1})");
    EXPECT_EQ(applied(object, object.insertChange(object.root(), false), {1}), R"({"a":1,"clave":""})");
}

TEST(JSONTreeInsert, AtATopLevelScalarDoesNotApply) {
    JSONTree tree = parsed("1");
    EXPECT_EQ(tree.insertChange(tree.root(), false), std::nullopt);
    EXPECT_EQ(tree.insertChange(tree.root(), true), std::nullopt);
    EXPECT_EQ(written(tree), "1");
    EXPECT_EQ(tree.nodeCount(), 1);
    tree.checkInvariants();
}

TEST(JSONTreeInsert, InsideAContainerAddsItsLastChild) {
    JSONTree tree = parsed(R"([[],{"clave":1},[1,2]])");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {0}), true), {0, 0}), R"([[""],{"clave":1},[1,2]])");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {1}), true), {1, 1}),
              R"([[""],{"clave":1,"clave 2":""},[1,2]])");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {2}), true), {2, 2}),
              R"([[""],{"clave":1,"clave 2":""},[1,2,""]])");
    EXPECT_EQ(applied(tree, tree.insertChange(tree.root(), true), {3}),
              R"([[""],{"clave":1,"clave 2":""},[1,2,""],""])");
}

TEST(JSONTreeInsert, InsideAScalarAddsItsNextSibling) {
    JSONTree tree = parsed(R"({"a":1,"b":2})");
    EXPECT_EQ(applied(tree, tree.insertChange(nodeAt(tree, {0}), true), {1}), R"({"a":1,"clave":"","b":2})");
}

TEST(JSONTreeInsert, AddsAnEmptyStringUnderTheNextId) {
    JSONTree tree = parsed("[1]");
    const auto change = tree.insertChange(tree.root(), true);
    EXPECT_EQ(change, (TreeChange{{TreeEdit::insert(NodeID{3}, tree.root(), 1)}, NodeID{3}}));
    EXPECT_EQ(tree.kind(NodeID{3}), NodeKind::string);
    EXPECT_EQ(tree.scalar(NodeID{3}), "");
    EXPECT_EQ(tree.parent(NodeID{3}), std::nullopt);
    EXPECT_EQ(tree.nodeCount(), 2);
    tree.checkInvariants();
}

TEST(JSONTreeInsert, AtADetachedNodeDoesNotApply) {
    JSONTree tree = parsed("[1,2]");
    const NodeID detached = nodeAt(tree, {0});
    tree.detach(detached);
    EXPECT_EQ(tree.insertChange(detached, false), std::nullopt);
    EXPECT_EQ(tree.insertChange(detached, true), std::nullopt);
}

TEST(JSONTreePaste, GivesMembersTheKeyPegado) {
    JSONTree tree = parsed(R"({"a":{}})");
    const JSONTree pasted = parsed(R"({"x":[1,"dos"]})");
    EXPECT_EQ(applied(tree, tree.pasteChange(pasted, nodeAt(tree, {0}), true), {0, 0}),
              R"({"a":{"pegado":{"x":[1,"dos"]}}})");
    EXPECT_EQ(applied(tree, tree.pasteChange(parsed("2"), nodeAt(tree, {0, 0}), false), {0, 1}),
              R"({"a":{"pegado":{"x":[1,"dos"]},"pegado 2":2}})");
    EXPECT_EQ(applied(tree, tree.pasteChange(parsed("3"), tree.root(), false), {1}),
              R"({"a":{"pegado":{"x":[1,"dos"]},"pegado 2":2},"pegado":3})");
}

TEST(JSONTreePaste, GivesElementsNoKey) {
    JSONTree tree = parsed("[1]");
    EXPECT_EQ(applied(tree, tree.pasteChange(parsed(R"({"x":null})"), nodeAt(tree, {0}), false), {1}),
              R"([1,{"x":null}])");
    EXPECT_EQ(tree.key(nodeAt(tree, {1})), "");
}

TEST(JSONTreePaste, AtATopLevelScalarDoesNotApply) {
    JSONTree tree = parsed("1");
    EXPECT_EQ(tree.pasteChange(parsed("[]"), tree.root(), true), std::nullopt);
    EXPECT_EQ(tree.pasteChange(parsed("[]"), tree.root(), false), std::nullopt);
    EXPECT_EQ(written(tree), "1");
}

TEST(JSONTreePaste, TakesWhatIsAttachedInTheOtherTreeAlone) {
    JSONTree pasted = parsed("[1,[2,3],4]");
    pasted.detach(nodeAt(pasted, {1}));
    JSONTree tree = parsed("[]");
    EXPECT_EQ(applied(tree, tree.pasteChange(pasted, tree.root(), true), {0}), "[[1,4]]");
    EXPECT_EQ(tree.storedNodeCount(), 5);
}

TEST(JSONTreePaste, MayPasteTheTreeIntoACopyOfItself) {
    JSONTree tree = parsed(R"({"a":[1,"dos"]})");
    const JSONTree pasted = tree;
    EXPECT_EQ(applied(tree, tree.pasteChange(pasted, nodeAt(tree, {0}), true), {0, 2}),
              R"({"a":[1,"dos",{"a":[1,"dos"]}]})");
    EXPECT_EQ(written(pasted), R"({"a":[1,"dos"]})");
}

TEST(JSONTreeDuplicate, PutsACopyRightAfterTheMember) {
    JSONTree tree = parsed(R"({"a":{"x":[1,2]},"b":null})");
    EXPECT_EQ(applied(tree, tree.duplicateChange(nodeAt(tree, {0})), {1}),
              R"({"a":{"x":[1,2]},"a copia":{"x":[1,2]},"b":null})");
    EXPECT_EQ(applied(tree, tree.duplicateChange(nodeAt(tree, {0})), {1}),
              R"({"a":{"x":[1,2]},"a copia 2":{"x":[1,2]},"a copia":{"x":[1,2]},"b":null})");
    EXPECT_EQ(
        applied(tree, tree.duplicateChange(nodeAt(tree, {2})), {3}),
        R"({"a":{"x":[1,2]},"a copia 2":{"x":[1,2]},"a copia":{"x":[1,2]},"a copia copia":{"x":[1,2]},"b":null})");
}

TEST(JSONTreeDuplicate, NumbersTheCopiesOfAKeyWithoutText) {
    JSONTree tree = parsed(R"({"":1," copia":2})");
    EXPECT_EQ(applied(tree, tree.duplicateChange(nodeAt(tree, {0})), {1}), R"({"":1," copia 2":1," copia":2})");
}

TEST(JSONTreeDuplicate, KeepsTheKeyOfAnElement) {
    JSONTree tree = parsed("[[1],2]");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {0}), "k"));
    EXPECT_EQ(applied(tree, tree.duplicateChange(nodeAt(tree, {0})), {1}), "[[1],[1],2]");
    EXPECT_EQ(tree.key(nodeAt(tree, {1})), "k");
    EXPECT_EQ(applied(tree, tree.duplicateChange(nodeAt(tree, {2})), {3}), "[[1],[1],2,2]");
}

TEST(JSONTreeDuplicate, OfTheTopLevelValueOrADetachedNodeDoesNotApply) {
    JSONTree tree = parsed("[1,2]");
    EXPECT_EQ(tree.duplicateChange(tree.root()), std::nullopt);
    EXPECT_EQ(tree.duplicateChange(JSONTree::holder), std::nullopt);
    const NodeID detached = nodeAt(tree, {0});
    tree.detach(detached);
    EXPECT_EQ(tree.duplicateChange(detached), std::nullopt);
}

} // namespace
} // namespace quelm
