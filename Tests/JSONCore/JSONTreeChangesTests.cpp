#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONTree.h"
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

/// Applies the edit, undoes it and does it again, and tells what it gave.
TreeEdit applyThereAndBack(JSONTree& tree, const TreeEdit& edit) {
    const JSONTree before = tree;
    const TreeEdit inverse = tree.apply(edit);
    tree.checkInvariants();
    const JSONTree after = tree;
    EXPECT_EQ(tree.apply(inverse), edit);
    tree.checkInvariants();
    EXPECT_EQ(tree, before);
    EXPECT_EQ(tree.nodeCount(), before.nodeCount());
    EXPECT_EQ(tree.apply(edit), inverse);
    EXPECT_EQ(tree, after);
    return inverse;
}

TEST(JSONTreeApply, SetKeyGivesTheKeyBeforeAsInverse) {
    JSONTree tree = parsed(R"({"a":[1],"b":2})");
    const NodeID member = nodeAt(tree, {0});
    EXPECT_EQ(applyThereAndBack(tree, TreeEdit::setKey(member, "z\n")), TreeEdit::setKey(member, "a"));
    EXPECT_EQ(written(tree), R"({"z\n":[1],"b":2})");
}

TEST(JSONTreeApply, SetKeyTakesAnyTextAlsoOneThatASiblingHas) {
    JSONTree tree = parsed(R"({"a":1,"b":2})");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {1}), "a"));
    EXPECT_EQ(written(tree), R"({"a":1,"a":2})");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {1}), ""));
    EXPECT_EQ(written(tree), R"({"a":1,"":2})");
    tree.apply(TreeEdit::setKey(nodeAt(tree, {1}), std::string_view("\0\"", 2)));
    EXPECT_EQ(written(tree), R"({"a":1,"\u0000\"":2})");
}

TEST(JSONTreeApply, SetKeyReplacesBytesByEquivalentOnes) {
    JSONTree tree = parsed("{\"\u00E9\":1}");
    const TreeEdit inverse = tree.apply(TreeEdit::setKey(nodeAt(tree, {0}), "e\u0301"));
    EXPECT_EQ(tree.key(nodeAt(tree, {0})), "e\u0301");
    EXPECT_EQ(inverse.asSetKey()->key.view(), "\u00E9");
}

TEST(JSONTreeApply, SetValueGivesTheKindAndTextBeforeAsInverse) {
    JSONTree tree = parsed(R"({"a":1.50,"b":"x"})");
    const NodeID number = nodeAt(tree, {0});
    EXPECT_EQ(applyThereAndBack(tree, TreeEdit::setValue(number, NodeKind::string, "hola")),
              TreeEdit::setValue(number, NodeKind::number, "1.50"));
    EXPECT_EQ(written(tree), R"({"a":"hola","b":"x"})");
    EXPECT_EQ(tree.key(number), "a");
    EXPECT_EQ(applyThereAndBack(tree, TreeEdit::setValue(number, NodeKind::null, "")),
              TreeEdit::setValue(number, NodeKind::string, "hola"));
    EXPECT_EQ(applyThereAndBack(tree, TreeEdit::setValue(number, NodeKind::bool_, "true")),
              TreeEdit::setValue(number, NodeKind::null, ""));
    EXPECT_EQ(written(tree), R"({"a":true,"b":"x"})");
}

TEST(JSONTreeApply, SetValueTakesTheTextUnchecked) {
    JSONTree tree = parsed("[1]");
    tree.apply(TreeEdit::setValue(nodeAt(tree, {0}), NodeKind::number, " not a number "));
    EXPECT_EQ(tree.scalar(nodeAt(tree, {0})), " not a number ");
    tree.apply(TreeEdit::setValue(nodeAt(tree, {0}), NodeKind::null, "x"));
    EXPECT_EQ(tree.scalar(nodeAt(tree, {0})), "x");
    EXPECT_EQ(written(tree), "[null]");
}

TEST(JSONTreeApply, InsertGivesARemovalAsInverse) {
    JSONTree tree = parsed("[1,2]");
    const NodeID added = tree.addNode(NodeKind::bool_, "", "true");
    for (const std::int64_t at : {0, 1, 2}) {
        JSONTree copy = tree;
        EXPECT_EQ(applyThereAndBack(copy, TreeEdit::insert(added, tree.root(), at)), TreeEdit::remove(added));
        EXPECT_EQ(nodeAt(copy, {at}), added);
        EXPECT_EQ(copy.nodeCount(), 4);
    }
}

TEST(JSONTreeApply, RemoveGivesAnInsertionAtTheFormerPlaceAsInverse) {
    JSONTree tree = parsed(R"([0,{"a":[1,2]},3])");
    const NodeID object = nodeAt(tree, {1});
    EXPECT_EQ(applyThereAndBack(tree, TreeEdit::remove(object)), TreeEdit::insert(object, tree.root(), 1));
    EXPECT_EQ(written(tree), "[0,3]");
    EXPECT_EQ(tree.nodeCount(), 3);
    EXPECT_EQ(written(tree, object), R"({"a":[1,2]})");
}

TEST(JSONTreeApply, AListGivesTheInversesInReverse) {
    JSONTree tree = parsed("[10,20,30]");
    const JSONTree before = tree;
    const NodeID node = nodeAt(tree, {0});
    const std::vector<TreeEdit> edits{TreeEdit::remove(node), TreeEdit::insert(node, tree.root(), 2)};
    const std::vector<TreeEdit> inverses = tree.apply(edits);
    EXPECT_THAT(inverses, ElementsAre(TreeEdit::remove(node), TreeEdit::insert(node, tree.root(), 0)));
    EXPECT_EQ(written(tree), "[20,30,10]");
    EXPECT_EQ(tree.apply(inverses), edits);
    EXPECT_EQ(tree, before);
}

TEST(JSONTreeApply, AListIsAppliedInOrder) {
    JSONTree tree = parsed(R"({"a":1})");
    const JSONTree before = tree;
    const NodeID member = nodeAt(tree, {0});
    const std::vector<TreeEdit> edits{TreeEdit::setKey(member, "b"), TreeEdit::setKey(member, "c"),
                                      TreeEdit::setValue(member, NodeKind::string, "1"), TreeEdit::setKey(member, "d")};
    const std::vector<TreeEdit> inverses = tree.apply(edits);
    EXPECT_EQ(written(tree), R"({"d":"1"})");
    EXPECT_THAT(inverses, ElementsAre(TreeEdit::setKey(member, "c"), TreeEdit::setValue(member, NodeKind::number, "1"),
                                      TreeEdit::setKey(member, "b"), TreeEdit::setKey(member, "a")));
    EXPECT_EQ(tree.apply(inverses), edits);
    EXPECT_EQ(tree, before);
}

TEST(JSONTreeApply, AnEmptyListChangesNothing) {
    JSONTree tree = parsed("[1]");
    EXPECT_TRUE(tree.apply(std::vector<TreeEdit>()).empty());
    EXPECT_EQ(written(tree), "[1]");
}

TEST(JSONTreeApply, UndoAndRedoMoveTheSameNodesWithoutCopying) {
    JSONTree tree = parsed(R"([{"a":[1,2,3]},null])");
    const std::int64_t stored = tree.storedNodeCount();
    const NodeID object = nodeAt(tree, {0});
    TreeEdit next = TreeEdit::remove(object);
    for (int i = 0; i < 100; ++i)
        next = tree.apply(next);
    EXPECT_EQ(tree.storedNodeCount(), stored);
    EXPECT_EQ(nodeAt(tree, {0}), object);
    EXPECT_EQ(written(tree), R"([{"a":[1,2,3]},null])");
    tree.checkInvariants();
}

TEST(JSONTreeApply, TakesTextsThatTheTreeItselfHolds) {
    JSONTree tree = parsed(R"({"clave":12345,"otra":"con \" escape","tercera":"plano"})");
    const NodeID number = nodeAt(tree, {0});
    const NodeID escaped = nodeAt(tree, {1});
    const NodeID plain = nodeAt(tree, {2});
    tree.apply(TreeEdit::setValue(number, NodeKind::string, tree.sharedScalar(number)));
    tree.apply(TreeEdit::setKey(number, tree.sharedScalar(escaped)));
    tree.apply(TreeEdit::setKey(escaped, tree.sharedKey(plain)));
    tree.apply(TreeEdit::setKey(plain, tree.sharedKey(plain)));
    EXPECT_EQ(written(tree), R"({"con \" escape":"12345","tercera":"con \" escape","tercera":"plano"})");
    const NodeID added = tree.addNode(NodeKind::string, tree.key(number), tree.scalar(plain).substr(1, 3));
    tree.apply(TreeEdit::insert(added, tree.root(), 0));
    EXPECT_EQ(written(tree, added), "\"lan\"");
    EXPECT_EQ(tree.key(added), "con \" escape");
    EXPECT_EQ(tree.uniqueKey(tree.key(added), tree.root()), "con \" escape 2");
    tree.checkInvariants();
}

TEST(JSONTreeApply, TakesAnyPieceOfTheTextThatItWasParsedFrom) {
    const SharedText source(std::string_view(R"({"a":"b\n","c":[1]})"));
    JSONTree tree = *JSONParser::parse(TextRope(source));
    const NodeID first = nodeAt(tree, {0});
    for (std::size_t position = 0; position < source.size(); ++position) {
        for (std::size_t count = 0; count <= source.size() - position; ++count) {
            const SharedText piece = source.slice(position, count);
            tree.apply(TreeEdit::setKey(first, piece));
            tree.apply(TreeEdit::setValue(first, NodeKind::string, piece));
            const JSONTree again = parsed(written(tree));
            ASSERT_EQ(again.key(NodeID{2}), piece.view());
            ASSERT_EQ(again.scalar(NodeID{2}), piece.view());
        }
    }
}

TEST(JSONTreeApply, AnEarlierCopyOfTheTreeStaysAsItWas) {
    JSONTree tree = parsed(R"({"a":[1,2],"b":"x"})");
    const JSONTree copy = tree;
    const NodeID list = nodeAt(tree, {0});
    tree.apply(TreeEdit::setKey(list, "z"));
    tree.apply(TreeEdit::setValue(nodeAt(tree, {1}), NodeKind::null, ""));
    tree.apply(TreeEdit::remove(nodeAt(tree, {0, 0})));
    tree.apply(TreeEdit::insert(tree.addNode(NodeKind::bool_, "", "true"), list, 0));
    EXPECT_EQ(written(tree), R"({"z":[true,2],"b":null})");
    EXPECT_EQ(written(copy), R"({"a":[1,2],"b":"x"})");
    EXPECT_EQ(copy.nodeCount(), 5);
    copy.checkInvariants();
    tree.checkInvariants();
}

} // namespace
} // namespace quelm
