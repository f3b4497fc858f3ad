#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Support/AppliedChange.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <limits>

namespace quelm {
namespace {

using test::applied;
using test::nodeAt;
using test::parsed;
using test::written;

constexpr std::int64_t farthest = std::numeric_limits<std::int64_t>::max();

TEST(JSONTreeKind, OfAScalarToAScalarKeepsTheNode) {
    JSONTree tree = parsed(R"({"a":12.50,"b":" 7 ","c":true,"d":null})");
    const NodeID number = nodeAt(tree, {0});
    const auto change = tree.kindChange(number, NodeKind::string);
    EXPECT_EQ(change, (TreeChange{{TreeEdit::setValue(number, NodeKind::string, "12.50")}, number}));
    EXPECT_EQ(applied(tree, change, {0}), R"({"a":"12.50","b":" 7 ","c":true,"d":null})");
    EXPECT_EQ(nodeAt(tree, {0}), number);
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {1}), NodeKind::number), {1}),
              R"({"a":"12.50","b":7,"c":true,"d":null})");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {2}), NodeKind::number), {2}),
              R"({"a":"12.50","b":7,"c":1,"d":null})");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {3}), NodeKind::bool_), {3}),
              R"({"a":"12.50","b":7,"c":1,"d":false})");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {1}), NodeKind::null), {1}),
              R"({"a":"12.50","b":null,"c":1,"d":false})");
}

TEST(JSONTreeKind, ToTheSameKindDoesNotApply) {
    JSONTree tree = parsed(R"([{},[],"",0,false,null])");
    for (const NodeKind kind : allNodeKinds)
        EXPECT_EQ(tree.kindChange(nodeAt(tree, {static_cast<std::int64_t>(kind)}), kind), std::nullopt);
}

TEST(JSONTreeKind, OfAContainerLeavesItsChildrenBehind) {
    JSONTree tree = parsed(R"({"o":{"a":1,"b":[2]},"z":0})");
    const JSONTree before = tree;
    const NodeID object = nodeAt(tree, {0});
    const auto change = tree.kindChange(object, NodeKind::array);
    const NodeID fresh{static_cast<std::int32_t>(before.storedNodeCount())};
    EXPECT_EQ(change, (TreeChange{{TreeEdit::remove(object), TreeEdit::insert(fresh, tree.root(), 0)}, fresh}));
    const std::vector<TreeEdit> inverses = tree.apply(change->edits);
    EXPECT_EQ(written(tree), R"({"o":[],"z":0})");
    EXPECT_EQ(tree.nodeCount(), 3);
    EXPECT_EQ(written(tree, object), R"({"a":1,"b":[2]})");
    tree.apply(inverses);
    EXPECT_EQ(tree, before);
    EXPECT_EQ(nodeAt(tree, {0}), object);
    tree.checkInvariants();
}

TEST(JSONTreeKind, BetweenScalarsAndContainersMakesANewNode) {
    JSONTree tree = parsed(R"([1,"a",{"x":1}])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {0}), NodeKind::object), {0}), R"([{},"a",{"x":1}])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {1}), NodeKind::array), {1}), R"([{},[],{"x":1}])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {2}), NodeKind::string), {2}), R"([{},[],""])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {0}), NodeKind::number), {0}), R"([0,[],""])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {1}), NodeKind::bool_), {1}), R"([0,false,""])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {2}), NodeKind::object), {2}), R"([0,false,{}])");
    EXPECT_EQ(applied(tree, tree.kindChange(nodeAt(tree, {2}), NodeKind::null), {2}), "[0,false,null]");
}

TEST(JSONTreeKind, OfTheTopLevelValueApplies) {
    JSONTree tree = parsed(R"({"a":[1,2]})");
    EXPECT_EQ(applied(tree, tree.kindChange(tree.root(), NodeKind::array), {}), "[]");
    EXPECT_EQ(tree.nodeCount(), 1);
    EXPECT_EQ(applied(tree, tree.kindChange(tree.root(), NodeKind::number), {}), "0");
    EXPECT_EQ(applied(tree, tree.kindChange(tree.root(), NodeKind::bool_), {}), "false");
    EXPECT_EQ(applied(tree, tree.kindChange(tree.root(), NodeKind::object), {}), "{}");
}

TEST(JSONTreeKind, OfADetachedNodeAppliesBetweenScalarsOnly) {
    JSONTree tree = parsed("[1,[]]");
    const NodeID number = nodeAt(tree, {0});
    const NodeID list = nodeAt(tree, {1});
    tree.detach(number);
    tree.detach(list);
    EXPECT_EQ(tree.kindChange(number, NodeKind::string),
              (TreeChange{{TreeEdit::setValue(number, NodeKind::string, "1")}, number}));
    EXPECT_EQ(tree.kindChange(number, NodeKind::array), std::nullopt);
    EXPECT_EQ(tree.kindChange(list, NodeKind::null), std::nullopt);
    EXPECT_EQ(tree.kindChange(JSONTree::holder, NodeKind::object), std::nullopt);
    EXPECT_EQ(tree.kindChange(JSONTree::holder, NodeKind::array), std::nullopt);
}

TEST(JSONTreeMove, ByOneSwapsWithTheNeighbour) {
    JSONTree tree = parsed("[10,20,30]");
    const NodeID node = nodeAt(tree, {1});
    const auto down = tree.moveChange(node, 1);
    EXPECT_EQ(down, (TreeChange{{TreeEdit::remove(node), TreeEdit::insert(node, tree.root(), 2)}, node}));
    EXPECT_EQ(applied(tree, down, {2}), "[10,30,20]");
    EXPECT_EQ(applied(tree, tree.moveChange(node, -1), {1}), "[10,20,30]");
    EXPECT_EQ(applied(tree, tree.moveChange(node, -1), {0}), "[20,10,30]");
}

TEST(JSONTreeMove, GoesAnyDistanceWithinTheSiblings) {
    JSONTree tree = parsed(R"({"a":0,"b":0,"c":0,"d":0})");
    EXPECT_EQ(applied(tree, tree.moveChange(nodeAt(tree, {0}), 3), {3}), R"({"b":0,"c":0,"d":0,"a":0})");
    EXPECT_EQ(applied(tree, tree.moveChange(nodeAt(tree, {3}), -2), {1}), R"({"b":0,"a":0,"c":0,"d":0})");
}

TEST(JSONTreeMove, BeyondTheEndsOrNowhereDoesNotApply) {
    JSONTree tree = parsed("[10,20,30]");
    for (const std::int64_t offset : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{3}, farthest, -farthest - 1})
        EXPECT_EQ(tree.moveChange(nodeAt(tree, {0}), offset), std::nullopt) << offset;
    for (const std::int64_t offset : {std::int64_t{1}, std::int64_t{0}, std::int64_t{-3}, farthest, -farthest - 1})
        EXPECT_EQ(tree.moveChange(nodeAt(tree, {2}), offset), std::nullopt) << offset;
    JSONTree single = parsed("[1]");
    EXPECT_EQ(single.moveChange(nodeAt(single, {0}), 1), std::nullopt);
    EXPECT_EQ(single.moveChange(nodeAt(single, {0}), -1), std::nullopt);
}

TEST(JSONTreeMove, OfTheTopLevelValueOrADetachedNodeDoesNotApply) {
    JSONTree tree = parsed("[1,2,3]");
    EXPECT_EQ(tree.moveChange(tree.root(), 1), std::nullopt);
    EXPECT_EQ(tree.moveChange(JSONTree::holder, 1), std::nullopt);
    const NodeID detached = nodeAt(tree, {0});
    tree.detach(detached);
    EXPECT_EQ(tree.moveChange(detached, 1), std::nullopt);
}

TEST(JSONTreeRemove, FocusesTheNextSiblingElseThePreviousElseTheParent) {
    JSONTree tree = parsed(R"({"a":[1,2,3]})");
    EXPECT_EQ(applied(tree, tree.removeChange(nodeAt(tree, {0, 0})), {0, 0}), R"({"a":[2,3]})");
    EXPECT_EQ(applied(tree, tree.removeChange(nodeAt(tree, {0, 1})), {0, 0}), R"({"a":[2]})");
    EXPECT_EQ(applied(tree, tree.removeChange(nodeAt(tree, {0, 0})), {0}), R"({"a":[]})");
    EXPECT_EQ(applied(tree, tree.removeChange(nodeAt(tree, {0})), {}), "{}");
}

TEST(JSONTreeRemove, TakesTheWholeSubtreeInOneEdit) {
    JSONTree tree = parsed(R"([{"a":{"b":[1,2]}},0])");
    const NodeID object = nodeAt(tree, {0});
    const auto change = tree.removeChange(object);
    EXPECT_EQ(change, (TreeChange{{TreeEdit::remove(object)}, nodeAt(tree, {1})}));
    EXPECT_EQ(applied(tree, change, {0}), "[0]");
    EXPECT_EQ(tree.nodeCount(), 2);
}

TEST(JSONTreeRemove, OfTheTopLevelValueOrADetachedNodeDoesNotApply) {
    JSONTree tree = parsed("[1]");
    EXPECT_EQ(tree.removeChange(tree.root()), std::nullopt);
    EXPECT_EQ(tree.removeChange(JSONTree::holder), std::nullopt);
    const NodeID detached = nodeAt(tree, {0});
    tree.detach(detached);
    EXPECT_EQ(tree.removeChange(detached), std::nullopt);
}

TEST(JSONTreeIntentions, LeaveNothingBehindInTheDocumentWhenTheyAreNotApplied) {
    JSONTree tree = parsed(R"({"a":[1],"b":{}})");
    const JSONTree before = tree;
    tree.insertChange(tree.root(), true);
    tree.pasteChange(parsed("[1,2]"), nodeAt(tree, {0}), true);
    tree.duplicateChange(nodeAt(tree, {0}));
    tree.kindChange(nodeAt(tree, {0}), NodeKind::object);
    tree.moveChange(nodeAt(tree, {0}), 1);
    tree.removeChange(nodeAt(tree, {0}));
    EXPECT_EQ(tree, before);
    EXPECT_EQ(tree.nodeCount(), before.nodeCount());
    EXPECT_GT(tree.storedNodeCount(), before.storedNodeCount());
    tree.checkInvariants();
}

} // namespace
} // namespace quelm
