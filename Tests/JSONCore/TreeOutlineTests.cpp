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

TEST(TreeOutline, StartsWithoutRows) {
    const JSONTree tree = parsed("[1]");
    const TreeOutline outline;
    EXPECT_EQ(outline.rowCount(), 0);
    EXPECT_TRUE(outline.expanded().empty());
    EXPECT_EQ(outline.index(tree.root()), std::nullopt);
    outline.checkInvariants(tree);
}

TEST(TreeOutline, OfATopLevelScalarHasOneRow) {
    EXPECT_EQ(Opened("42").rows(), "$ number 42\n");
    EXPECT_EQ(Opened("null").rows(), "$ null null\n");
    EXPECT_EQ(Opened("\"\"").rows(), "$ string\n");
}

TEST(TreeOutline, ShowsTheTopLevelValueExpandedAndTheRestCollapsed) {
    const Opened opened(R"({"a":1,"b":[true,null],"c":{"d":"x"},"e":"y\n","f":{}})");
    EXPECT_EQ(opened.rows(), "$ object 5 open\n"
                             "  \"a\" number 1\n"
                             "  \"b\" array 2\n"
                             "  \"c\" object 1\n"
                             "  \"e\" string y\n\n"
                             "  \"f\" object 0\n");
    EXPECT_TRUE(opened.outline.expanded().contains(opened.tree.root()));
    EXPECT_EQ(opened.outline.expanded().size(), 1);
    EXPECT_EQ(opened.outline.index(JSONTree::holder), std::nullopt);
    EXPECT_EQ(opened.outline.index(opened.at({1, 0})), std::nullopt);
}

TEST(TreeOutline, LabelsElementsByTheirPosition) {
    Opened opened("[10,[20,30],{}]");
    opened.expand({1});
    EXPECT_EQ(opened.rows(), "$ array 3 open\n"
                             "  [0] number 10\n"
                             "  [1] array 2 open\n"
                             "    [0] number 20\n"
                             "    [1] number 30\n"
                             "  [2] object 0\n");
}

TEST(TreeOutline, AnExpandedEmptyContainerShowsOnlyItsOwnRow) {
    EXPECT_EQ(Opened("{}").rows(), "$ object 0 open\n");
    Opened opened("[[],{}]");
    opened.expand({0});
    opened.expand({1});
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] array 0 open\n  [1] object 0 open\n");
}

TEST(TreeOutline, MarksEveryMemberWhoseKeyIsThereTwice) {
    EXPECT_EQ(Opened(R"({"a":1,"b":2,"a":3})").rows(), "$ object 3 open\n"
                                                       "  \"a\"* number 1\n"
                                                       "  \"b\" number 2\n"
                                                       "  \"a\"* number 3\n");
    EXPECT_EQ(Opened(R"({"a":1,"a":2,"a":3,"A":4})").rows(), "$ object 4 open\n"
                                                             "  \"a\"* number 1\n"
                                                             "  \"a\"* number 2\n"
                                                             "  \"a\"* number 3\n"
                                                             "  \"A\" number 4\n");
    EXPECT_EQ(Opened("{\"\u00E9\":1,\"e\u0301\":2}").rows(), "$ object 2 open\n"
                                                             "  \"\u00E9\"* number 1\n"
                                                             "  \"e\u0301\"* number 2\n");
    EXPECT_EQ(Opened(R"({"":1,"":2})").rows(), "$ object 2 open\n  \"\"* number 1\n  \"\"* number 2\n");
}

TEST(TreeOutline, MarksDuplicatesWithinOneObjectOnly) {
    Opened opened(R"({"a":{"a":1},"b":{"a":2}})");
    opened.expandAll({});
    EXPECT_EQ(opened.rows(), "$ object 2 open\n"
                             "  \"a\" object 1 open\n"
                             "    \"a\" number 1\n"
                             "  \"b\" object 1 open\n"
                             "    \"a\" number 2\n");
}

TEST(TreeOutline, NeverMarksElements) {
    Opened opened("[1,2]");
    opened.tree.apply(TreeEdit::setKey(opened.at({0}), "a"));
    opened.tree.apply(TreeEdit::setKey(opened.at({1}), "a"));
    opened.outline.rebuild(opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] number 1\n  [1] number 2\n");
}

TEST(TreeOutline, ShortensLongScalars) {
    const Opened opened("[\"" + std::string(201, 'a') + "\",\"" + std::string(200, 'a') + "\",\"" +
                        test::repeated("é", 101) + "\"," + std::string(201, '7') + "]");
    EXPECT_EQ(opened.outline.row(1, opened.tree).value, std::string(200, 'a') + "…");
    EXPECT_EQ(opened.outline.row(2, opened.tree).value, std::string(200, 'a'));
    EXPECT_EQ(opened.outline.row(3, opened.tree).value, test::repeated("é", 101) + "…");
    EXPECT_EQ(opened.outline.row(4, opened.tree).value, std::string(200, '7') + "…");
}

TEST(TreeOutline, RebuildingExpandsTheTopLevelValueAndKeepsTheRest) {
    Opened opened("[[1],[2]]");
    opened.expand({1});
    opened.collapse({});
    opened.outline.rebuild(opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 2 open\n  [0] array 1\n  [1] array 1 open\n    [0] number 2\n");
}

TEST(TreeOutline, RefreshingTheHolderRebuilds) {
    Opened opened("[[1]]");
    opened.collapse({});
    opened.outline.refresh(JSONTree::holder, opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] array 1\n");
}

TEST(TreeOutline, RefreshingANodeWithoutARowChangesNothing) {
    Opened opened("[[1]]");
    const std::string before = opened.rows();
    opened.outline.refresh(opened.at({0, 0}), opened.tree);
    EXPECT_EQ(opened.rows(), before);
    TreeOutline empty;
    empty.refresh(opened.tree.root(), opened.tree);
    EXPECT_EQ(empty.rowCount(), 0);
}

TEST(TreeOutline, RefreshingARemovedNodeDeletesItsRowsAlone) {
    Opened opened("[[1,[2]],3]");
    opened.expandAll({});
    const NodeID list = opened.at({0});
    opened.tree.apply(TreeEdit::remove(list));
    opened.outline.refresh(list, opened.tree);
    EXPECT_EQ(opened.outline.rowCount(), 2);
    EXPECT_EQ(opened.outline.index(list), std::nullopt);
    opened.outline.refresh(opened.tree.root(), opened.tree);
    EXPECT_EQ(opened.rows(), "$ array 1 open\n  [0] number 3\n");
}

TEST(TreeOutline, RefreshingAParentShowsItsNewChildren) {
    Opened opened("[1,[2]]");
    opened.expandAll({});
    opened.tree.attach(opened.tree.addNode(NodeKind::null, "", ""), opened.at({1}), 0);
    opened.outline.refresh(opened.at({1}), opened.tree);
    EXPECT_EQ(opened.rows(),
              "$ array 2 open\n  [0] number 1\n  [1] array 2 open\n    [0] null null\n    [1] number 2\n");
}

TEST(TreeOutline, BuildsTheRowsOfASubtreeWithTheFirstRowAsGiven) {
    Opened opened(R"({"a":{"x":1,"x":[2]},"b":0})");
    opened.expand({0});
    const auto rows = opened.outline.buildRows(opened.at({0}), 5, TreeRow::Label::index(9), true, opened.tree);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0], (TreeRow{opened.at({0}), 5, TreeRow::Label::index(9), NodeKind::object, "", 2, true, true}));
    EXPECT_EQ(rows[1],
              (TreeRow{opened.at({0, 0}), 6, TreeRow::Label::key("x"), NodeKind::number, "1", 0, false, true}));
    EXPECT_EQ(rows[2], (TreeRow{opened.at({0, 1}), 6, TreeRow::Label::key("x"), NodeKind::array, "", 1, false, true}));
    EXPECT_EQ(opened.outline.rowCount(), 5);
    const auto scalar = opened.outline.buildRows(opened.at({1}), 0, TreeRow::Label::root(), false, opened.tree);
    ASSERT_EQ(scalar.size(), 1U);
    EXPECT_EQ(scalar[0], (TreeRow{opened.at({1}), 0, TreeRow::Label::root(), NodeKind::number, "0", 0, false, false}));
}

TEST(TreeOutline, CopiesDoNotFollowEachOther) {
    Opened opened("[[1],[2]]");
    const TreeOutline copy = opened.outline;
    const std::string before = opened.rows();
    opened.expandAll({});
    EXPECT_EQ(rowsText(copy, opened.tree), before);
    EXPECT_EQ(opened.outline.rowCount(), 5);
}

TEST(TreeOutlineDeathTest, StopsAtIdsOutsideTheStoreAndRowsOutsideTheList) {
    Opened opened("[1]");
    const std::vector<TreeEdit> edits{TreeEdit::setValue(NodeID{9}, NodeKind::null, "")};
    EXPECT_DEATH(opened.outline.row(-1, opened.tree), "programming error");
    EXPECT_DEATH(opened.outline.row(2, opened.tree), "programming error");
    EXPECT_DEATH(opened.outline.rowID(2), "programming error");
    EXPECT_DEATH(opened.outline.rowDepth(-1), "programming error");
    EXPECT_DEATH(opened.outline.refresh(NodeID{9}, opened.tree), "programming error");
    EXPECT_DEATH(opened.outline.refresh(NodeID{-1}, opened.tree), "programming error");
    EXPECT_DEATH(opened.outline.setExpanded(NodeID{9}, true, false, opened.tree), "programming error");
    EXPECT_DEATH(opened.outline.reveal(NodeID{9}, opened.tree), "programming error");
    EXPECT_DEATH(opened.outline.update(edits, opened.tree), "programming error");
    for (const NodeID id : {NodeID{9}, NodeID{-1}, NodeID{99'999'999}}) {
        EXPECT_DEATH(opened.outline.buildRows(id, 0, TreeRow::Label::root(), false, opened.tree), "programming error");
    }
}

TEST(TreeOutline, MakesTheSameRowsForPreviewsOfOrdinaryTexts) {
    Opened opened(R"({"a":1,"b":[true,null,{"c":"d"}],"a":"x…","\u00e9":"","":{}})");
    opened.expandAll({});
    for (std::int64_t index = 0; index < opened.outline.rowCount(); ++index)
        EXPECT_EQ(opened.outline.previewRow(index, opened.tree), opened.outline.row(index, opened.tree));
}

TEST(TreeOutline, CutsLongTextsInPreviewsAndMarksWholeKeys) {
    const std::string key = test::repeated("clave ñ ", 4'000);
    const std::string value = "e" + test::repeated("\u0301", 20'000);
    const Opened opened("{\"" + key + "1\":\"" + value + "\",\"" + key + "2\":1,\"" + key + "2\":2}");
    const TreeRow first = opened.outline.previewRow(1, opened.tree);
    EXPECT_EQ(*first.label.asKey(), TreeRow::previewKey(key));
    EXPECT_EQ(first.value, TreeRow::previewText(value));
    EXPECT_FALSE(first.isDuplicateKey);
    EXPECT_TRUE(opened.outline.previewRow(2, opened.tree).isDuplicateKey);
    EXPECT_EQ(*opened.outline.row(1, opened.tree).label.asKey(), key + "1");
    EXPECT_EQ(opened.outline.row(1, opened.tree).value, value + "…");
}

} // namespace
} // namespace quelm
