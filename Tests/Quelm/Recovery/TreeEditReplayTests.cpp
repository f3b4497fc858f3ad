#include "Tests/Quelm/Recovery/ReplayedJournalTest.h"

#include <limits>

namespace quelm {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

class TreeEditReplayTests : public ReplayedJournalTest {
protected:
    TreeEditReplayTests() { startTree(R"({"a":[1,"dos"],"b":{}})"); }

    /// Refused, and the tree as before.
    void expectImpossible(std::initializer_list<journal::NodeEdit> edits) {
        EXPECT_EQ(apply(tree(edits)), impossible);
        EXPECT_EQ(json(), R"({"a":[1,"dos"],"b":{}})");
        startTree(R"({"a":[1,"dos"],"b":{}})");
    }
};

TEST_F(TreeEditReplayTests, RenamesAMember) {
    repeat({tree({journal::SetKey{{0, 1}, text("ñ")}})});
    EXPECT_EQ(json(), R"({"a":[1,"dos"],"ñ":{}})");
}

TEST_F(TreeEditReplayTests, ChangesValuesAndTheirKinds) {
    repeat({tree({journal::SetValue{{0, 0, 0}, NodeKind::number, text("1.0e9")}}),
            tree({journal::SetValue{{0, 0, 1}, NodeKind::null, {}}})});
    EXPECT_EQ(json(), R"({"a":[1.0e9,null],"b":{}})");
}

TEST_F(TreeEditReplayTests, TheTextIsGoneAfterwards) {
    repeat({tree({journal::SetKey{{0, 1}, text("c")}})});
    EXPECT_FALSE(content().text);
}

TEST_F(TreeEditReplayTests, InsertsANewSubtree) {
    repeat({tree({journal::InsertNew{{0}, 1, text("c"), text(R"([{"d":"\n"},2])")}}),
            tree({journal::InsertNew{{0, 0}, 2, text(""), text("true")}})});
    EXPECT_EQ(json(), R"({"a":[1,"dos",true],"c":[{"d":"\n"},2],"b":{}})");
}

TEST_F(TreeEditReplayTests, MovesANodeAwayAndBack) {
    repeat({tree({journal::Remove{{0, 0}, 1}, journal::InsertDetached{{0, 0}, 0, 1}})});
    EXPECT_EQ(json(), R"({"b":{"a":[1,"dos"]}})");
}

TEST_F(TreeEditReplayTests, ANumberServesAgainOnceItsNodeIsAttached) {
    repeat({tree({journal::Remove{{0, 0}, 1}}), tree({journal::InsertDetached{{0}, 1, 1}}),
            tree({journal::Remove{{0, 0}, 1}}), tree({journal::InsertDetached{{0}, 0, 1}})});
    EXPECT_EQ(json(), R"({"b":{},"a":[1,"dos"]})");
}

TEST_F(TreeEditReplayTests, ReplacesTheTopLevelValue) {
    repeat({tree({journal::Remove{{0}, 3}, journal::InsertNew{{}, 0, text(""), text("[]")}}),
            tree({journal::Remove{{0}, 4}, journal::InsertDetached{{}, 0, 3}})});
    EXPECT_EQ(json(), R"({"a":[1,"dos"],"b":{}})");
}

TEST_F(TreeEditReplayTests, RefusesATreeWithoutATopLevelValueOrWithTwo) {
    expectImpossible({journal::Remove{{0}, 1}});
    expectImpossible({journal::InsertNew{{}, 0, text(""), text("1")}});
    expectImpossible({journal::InsertNew{{}, 1, text(""), text("1")}});
    expectImpossible({journal::Remove{{0, 0}, 1}, journal::InsertDetached{{}, 1, 1}});
    expectImpossible({journal::Remove{{0}, 1}, journal::SetKey{{0, 0}, text("x")}});
}

TEST_F(TreeEditReplayTests, RefusesTheHolderAsAValue) {
    expectImpossible({journal::SetKey{{}, text("x")}});
    expectImpossible({journal::SetValue{{}, NodeKind::number, text("1")}});
    expectImpossible({journal::Remove{{}, 1}});
}

TEST_F(TreeEditReplayTests, RefusesPathsThatLeadNowhere) {
    for (const journal::NodePath& path :
         {journal::NodePath{1}, {0, 2}, {0, 0, 2}, {0, 0, 0, 0}, {0, 1, 0}, {0xFFFF'FFFF}, {0, 0xFFFF'FFFF}}) {
        expectImpossible({journal::SetKey{path, text("x")}});
        expectImpossible({journal::SetValue{path, NodeKind::null, {}}});
        expectImpossible({journal::Remove{path, 1}});
        expectImpossible({journal::InsertNew{path, 0, {}, text("1")}});
    }
}

TEST_F(TreeEditReplayTests, RefusesIndexesOutsideTheParent) {
    for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{3}, most, least}) {
        expectImpossible({journal::InsertNew{{0, 0}, index, {}, text("1")}});
        expectImpossible({journal::Remove{{0, 1}, 1}, journal::InsertDetached{{0, 0}, index, 1}});
    }
}

TEST_F(TreeEditReplayTests, RefusesToInsertIntoAScalar) {
    expectImpossible({journal::InsertNew{{0, 0, 0}, 0, {}, text("1")}});
    expectImpossible({journal::Remove{{0, 1}, 1}, journal::InsertDetached{{0, 0, 1}, 0, 1}});
}

TEST_F(TreeEditReplayTests, RefusesValuesThatAreNotOfTheirKind) {
    expectImpossible({journal::SetValue{{0, 0, 0}, NodeKind::number, text("01")}});
    expectImpossible({journal::SetValue{{0, 0, 0}, NodeKind::bool_, text("yes")}});
    expectImpossible({journal::SetValue{{0, 0, 0}, NodeKind::null, text("null")}});
    expectImpossible({journal::SetValue{{0, 0, 0}, NodeKind::object, {}}});
    expectImpossible({journal::SetValue{{0, 0}, NodeKind::string, text("x")}});
}

TEST_F(TreeEditReplayTests, RefusesTextsThatAreNotUTF8) {
    expectImpossible({journal::SetKey{{0, 0}, text("\xFF")}});
    expectImpossible({journal::SetValue{{0, 0, 0}, NodeKind::string, text("\xC3")}});
    expectImpossible({journal::InsertNew{{0}, 0, text("\xC3"), text("1")}});
    expectImpossible({journal::InsertNew{{0}, 0, {}, text("\"\xC3\"")}});
}

TEST_F(TreeEditReplayTests, RefusesANewSubtreeThatIsNoJSON) {
    expectImpossible({journal::InsertNew{{0}, 0, {}, text("")}});
    expectImpossible({journal::InsertNew{{0}, 0, {}, text("[1")}});
    expectImpossible({journal::InsertNew{{0}, 0, {}, text("1 2")}});
}

TEST_F(TreeEditReplayTests, RefusesNumbersThatAreUnknownOrTaken) {
    expectImpossible({journal::InsertDetached{{0}, 0, 1}});
    expectImpossible({journal::Remove{{0, 0}, 1}, journal::Remove{{0, 0}, 1}});
    expectImpossible(
        {journal::Remove{{0, 0}, 1}, journal::InsertDetached{{0}, 0, 1}, journal::InsertDetached{{0}, 0, 1}});
}

TEST_F(TreeEditReplayTests, NothingIsLeftOfEditsWhenALaterOneOfTheirListIsRefused) {
    expectImpossible(
        {journal::SetKey{{0, 0}, text("x")}, journal::Remove{{0, 1}, 1}, journal::InsertNew{{0}, 0, {}, text("[")}});
}

TEST_F(TreeEditReplayTests, RefusesToEditTheTreeOfATextEditor) {
    startText("[1]");
    EXPECT_EQ(apply(tree({journal::Remove{{0, 0}, 1}})), impossible);
}

TEST_F(TreeEditReplayTests, ForgetsDetachedNodesWhenTheTreeGivesWayToText) {
    repeat({tree({journal::Remove{{0, 0}, 1}}), journal::ChangeMode{EditorMode::text},
            journal::ChangeMode{EditorMode::tree}});
    EXPECT_EQ(apply(tree({journal::InsertDetached{{0}, 0, 1}})), impossible);
}

TEST_F(TreeEditReplayTests, TakesAPathAsLongAsTheTreeIsDeep) {
    const std::size_t depth = 100'000;
    startTree(std::string(depth, '[') + std::string(depth, ']'));
    repeat({tree({journal::InsertNew{journal::NodePath(depth, 0), 0, {}, text("1")}})});
    EXPECT_EQ(json(), std::string(depth, '[') + "1" + std::string(depth, ']'));
    startTree("[]");
    EXPECT_EQ(apply(tree({journal::Remove{journal::NodePath(depth, 0), 1}})), impossible);
}

} // namespace
} // namespace quelm
