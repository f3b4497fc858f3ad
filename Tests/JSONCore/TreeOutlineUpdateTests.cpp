#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/OutlineText.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;

/// A tree whose outline follows every change, as an editor's does.
struct Edited {
    explicit Edited(std::string_view text) : tree(parsed(text)) {
        outline.rebuild(tree);
        outline.setExpanded(tree.root(), true, true, tree);
    }

    /// Applies the edits and tells how to undo them.
    std::vector<TreeEdit> apply(std::vector<TreeEdit> edits) {
        const std::vector<TreeEdit> inverses = tree.apply(edits);
        edits.insert(edits.end(), inverses.begin(), inverses.end());
        outline.update(edits, tree);
        return inverses;
    }
    std::vector<TreeEdit> apply(const std::optional<TreeChange>& change) { return apply(change.value().edits); }

    std::string rows() const { return test::rowsText(outline, tree); }
    NodeID at(std::initializer_list<std::int64_t> positions) const { return nodeAt(tree, positions); }

    JSONTree tree;
    TreeOutline outline;
};

TEST(TreeOutlineUpdate, ShowsANewValue) {
    Edited edited(R"({"a":1,"b":2})");
    edited.apply({TreeEdit::setValue(edited.at({0}), NodeKind::string, "hola")});
    EXPECT_EQ(edited.rows(), "$ object 2 open\n  \"a\" string hola\n  \"b\" number 2\n");
}

TEST(TreeOutlineUpdate, ShowsANewKey) {
    Edited edited(R"({"a":[1],"b":2})");
    edited.apply({TreeEdit::setKey(edited.at({0}), "z")});
    EXPECT_EQ(edited.rows(), "$ object 2 open\n  \"z\" array 1 open\n    [0] number 1\n  \"b\" number 2\n");
}

TEST(TreeOutlineUpdate, ClearsTheMarkOfTheMemberThatIsLeftAlone) {
    Edited edited(R"({"a":1,"b":2,"a":3})");
    const auto undo = edited.apply({TreeEdit::setKey(edited.at({2}), "c")});
    EXPECT_EQ(edited.rows(), "$ object 3 open\n  \"a\" number 1\n  \"b\" number 2\n  \"c\" number 3\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), "$ object 3 open\n  \"a\"* number 1\n  \"b\" number 2\n  \"a\"* number 3\n");
}

TEST(TreeOutlineUpdate, MarksTheMemberThatIsJoined) {
    Edited edited(R"({"a":1,"b":2,"c":3})");
    edited.apply({TreeEdit::setKey(edited.at({2}), "a")});
    EXPECT_EQ(edited.rows(), "$ object 3 open\n  \"a\"* number 1\n  \"b\" number 2\n  \"a\"* number 3\n");
}

TEST(TreeOutlineUpdate, KeepsTheMarksOfThreeMembersOfOneKey) {
    Edited edited(R"({"a":1,"a":2,"a":3})");
    edited.apply({TreeEdit::setKey(edited.at({1}), "b")});
    EXPECT_EQ(edited.rows(), "$ object 3 open\n  \"a\"* number 1\n  \"b\" number 2\n  \"a\"* number 3\n");
    edited.apply({TreeEdit::setKey(edited.at({1}), "a")});
    EXPECT_EQ(edited.rows(), "$ object 3 open\n  \"a\"* number 1\n  \"a\"* number 2\n  \"a\"* number 3\n");
}

TEST(TreeOutlineUpdate, MarksByCanonicalEquivalence) {
    Edited edited("{\"\u00E9\":1,\"b\":2}");
    edited.apply({TreeEdit::setKey(edited.at({1}), "e\u0301")});
    EXPECT_EQ(edited.rows(), "$ object 2 open\n  \"\u00E9\"* number 1\n  \"e\u0301\"* number 2\n");
}

TEST(TreeOutlineUpdate, MarksAfterARemovalAndAnInsertion) {
    Edited edited(R"({"a":1,"a":2})");
    const auto undo = edited.apply(edited.tree.removeChange(edited.at({1})));
    EXPECT_EQ(edited.rows(), "$ object 1 open\n  \"a\" number 1\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), "$ object 2 open\n  \"a\"* number 1\n  \"a\"* number 2\n");
}

TEST(TreeOutlineUpdate, RelabelsTheElementsAfterARemovedOne) {
    Edited edited("[10,20,30]");
    const auto undo = edited.apply(edited.tree.removeChange(edited.at({0})));
    EXPECT_EQ(edited.rows(), "$ array 2 open\n  [0] number 20\n  [1] number 30\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), "$ array 3 open\n  [0] number 10\n  [1] number 20\n  [2] number 30\n");
}

TEST(TreeOutlineUpdate, ShowsAnInsertedNodeInItsPlace) {
    Edited edited(R"([[1,2],{"a":3}])");
    edited.apply(edited.tree.insertChange(edited.at({0, 0}), false));
    edited.apply(edited.tree.insertChange(edited.at({1}), true));
    edited.apply(edited.tree.pasteChange(parsed(R"({"x":[0]})"), edited.at({0}), false));
    EXPECT_EQ(edited.rows(), "$ array 3 open\n"
                             "  [0] array 3 open\n"
                             "    [0] number 1\n"
                             "    [1] string\n"
                             "    [2] number 2\n"
                             "  [1] object 1\n"
                             "  [2] object 2 open\n"
                             "    \"a\" number 3\n"
                             "    \"clave\" string\n");
}

TEST(TreeOutlineUpdate, OfACollapsedParentChangesItsCountAlone) {
    Edited edited("[[1,2],3]");
    edited.outline.setExpanded(edited.at({0}), false, false, edited.tree);
    edited.apply(edited.tree.insertChange(edited.at({0}), true));
    EXPECT_EQ(edited.rows(), "$ array 2 open\n  [0] array 3\n  [1] number 3\n");
    edited.apply(edited.tree.removeChange(edited.at({0, 0})));
    EXPECT_EQ(edited.rows(), "$ array 2 open\n  [0] array 2\n  [1] number 3\n");
}

TEST(TreeOutlineUpdate, OfAHiddenParentShowsNothing) {
    Edited edited("[[[1]],2]");
    edited.outline.setExpanded(edited.at({0}), false, false, edited.tree);
    edited.apply(edited.tree.insertChange(edited.at({0, 0}), true));
    EXPECT_EQ(edited.rows(), "$ array 2 open\n  [0] array 1\n  [1] number 2\n");
    edited.outline.setExpanded(edited.at({0}), true, false, edited.tree);
    EXPECT_EQ(edited.rows(), "$ array 2 open\n  [0] array 1 open\n    [0] array 2 open\n      [0] number 1\n"
                             "      [1] string\n  [1] number 2\n");
}

TEST(TreeOutlineUpdate, FollowsAMoveWithItsSubtree) {
    Edited edited("[[1,[2]],3,[4]]");
    const NodeID list = edited.at({0});
    const auto undo = edited.apply(edited.tree.moveChange(list, 2));
    EXPECT_EQ(edited.rows(), "$ array 3 open\n"
                             "  [0] number 3\n"
                             "  [1] array 1 open\n"
                             "    [0] number 4\n"
                             "  [2] array 2 open\n"
                             "    [0] number 1\n"
                             "    [1] array 1 open\n"
                             "      [0] number 2\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), "$ array 3 open\n"
                             "  [0] array 2 open\n"
                             "    [0] number 1\n"
                             "    [1] array 1 open\n"
                             "      [0] number 2\n"
                             "  [1] number 3\n"
                             "  [2] array 1 open\n"
                             "    [0] number 4\n");
}

TEST(TreeOutlineUpdate, ShowsAnUndoneRemovalExpandedAsItWas) {
    Edited edited("[[1,[2]],3]");
    const std::string before = edited.rows();
    edited.apply(edited.apply(edited.tree.removeChange(edited.at({0}))));
    EXPECT_EQ(edited.rows(), before);
}

TEST(TreeOutlineUpdate, ShowsACopyCollapsed) {
    Edited edited("[[1]]");
    edited.apply(edited.tree.duplicateChange(edited.at({0})));
    EXPECT_EQ(edited.rows(), "$ array 2 open\n  [0] array 1 open\n    [0] number 1\n  [1] array 1\n");
}

TEST(TreeOutlineUpdate, FollowsAChangeOfKind) {
    Edited edited(R"({"a":[1],"b":2})");
    const std::string before = edited.rows();
    auto undo = edited.apply(edited.tree.kindChange(edited.at({0}), NodeKind::object));
    EXPECT_EQ(edited.rows(), "$ object 2 open\n  \"a\" object 0\n  \"b\" number 2\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), before);
    undo = edited.apply(edited.tree.kindChange(edited.at({1}), NodeKind::string));
    EXPECT_EQ(edited.rows(), "$ object 2 open\n  \"a\" array 1 open\n    [0] number 1\n  \"b\" string 2\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), before);
}

TEST(TreeOutlineUpdate, FollowsAChangeOfTheTopLevelValue) {
    Edited edited(R"({"a":[1]})");
    const std::string before = edited.rows();
    const auto undo = edited.apply(edited.tree.kindChange(edited.tree.root(), NodeKind::array));
    EXPECT_EQ(edited.rows(), "$ array 0 open\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), before);
    edited.apply(edited.tree.kindChange(edited.tree.root(), NodeKind::number));
    EXPECT_EQ(edited.rows(), "$ number 0\n");
}

TEST(TreeOutlineUpdate, ExpandsATopLevelValueThatCameBack) {
    Edited edited("[1]");
    const auto undo = edited.apply(edited.tree.kindChange(edited.tree.root(), NodeKind::number));
    edited.apply(undo);
    edited.outline.setExpanded(edited.tree.root(), false, false, edited.tree);
    const auto again = edited.apply(edited.tree.kindChange(edited.tree.root(), NodeKind::object));
    edited.apply(again);
    EXPECT_EQ(edited.rows(), "$ array 1 open\n  [0] number 1\n");
}

TEST(TreeOutlineUpdate, TakesSeveralEditsAtOnce) {
    Edited edited(R"([{"a":1},[2,[3]],4])");
    const std::string before = edited.rows();
    const NodeID object = edited.at({0});
    const NodeID inner = edited.at({1, 1});
    const NodeID last = edited.at({2});
    // The inner list moves into the object, the object to the end, the last value into the inner list.
    const auto undo =
        edited.apply({TreeEdit::remove(inner), TreeEdit::setKey(inner, "a"), TreeEdit::insert(inner, object, 0),
                      TreeEdit::remove(last), TreeEdit::insert(last, inner, 1), TreeEdit::remove(object),
                      TreeEdit::insert(object, edited.tree.root(), 1)});
    EXPECT_EQ(edited.rows(), "$ array 2 open\n"
                             "  [0] array 1 open\n"
                             "    [0] number 2\n"
                             "  [1] object 2 open\n"
                             "    \"a\"* array 2 open\n"
                             "      [0] number 3\n"
                             "      [1] number 4\n"
                             "    \"a\"* number 1\n");
    edited.apply(undo);
    EXPECT_EQ(edited.rows(), before);
}

TEST(TreeOutlineUpdate, IgnoresDetachedNodes) {
    Edited edited("[1]");
    const NodeID detached = edited.tree.addNode(NodeKind::array, "k", "");
    edited.apply(
        {TreeEdit::setKey(detached, "z"), TreeEdit::insert(edited.tree.addNode(NodeKind::null, "", ""), detached, 0)});
    EXPECT_EQ(edited.rows(), "$ array 1 open\n  [0] number 1\n");
}

TEST(TreeOutlineUpdate, OfAnEmptyListChangesNothing) {
    Edited edited("[1]");
    edited.outline.update({}, edited.tree);
    EXPECT_EQ(edited.rows(), "$ array 1 open\n  [0] number 1\n");
}

} // namespace
} // namespace quelm
