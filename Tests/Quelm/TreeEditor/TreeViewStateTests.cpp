#include "Quelm/TreeEditor/TreeViewState.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TreeWindow.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <stop_token>

namespace quelm {
namespace {

class TreeViewStateTests : public TreeWindow {
protected:
    /// The document's file has other contents: they take the place of those that are shown.
    void carryOver(std::string_view text) {
        JSONContent content = JSONContent::fromText(TextRope(SharedText(text)));
        const TreeViewState state = TreeViewState::of(*view);
        std::optional<CarriedTreeViewState> carried = state.carriedOverTo(*content.tree);
        ASSERT_TRUE(carried.has_value());
        editor->setPreparedRows(std::move(carried->rows));
        document->reload(std::move(content));
        editor->setPreparedRows(std::nullopt);
        carried->restore(*view);
        editor->outline().checkInvariants(*editor->tree());
    }
    NodeID member(std::int64_t index) const { return editor->tree()->children(editor->tree()->root())[index]; }
    std::int64_t rowOf(NodeID node) const { return editor->outline().index(node).value_or(-1); }
    int topOf(NodeID node) const {
        const auto area = view->rowArea(rowOf(node));
        return area ? area->top() : -1000;
    }
    /// `{"m0":[0],"m1":[1]…}` with members before and without those below `first`.
    static std::string members(std::int64_t count, const std::string& before = {}, std::int64_t first = 0) {
        std::string text = "{" + before;
        for (std::int64_t index = first; index < count; ++index) {
            const std::string number = std::to_string(index);
            text += (text.size() > 1 ? ",\"m" : "\"m") + number + "\":[" + number + "]";
        }
        return text + "}";
    }
};

TEST_F(TreeViewStateTests, KeepsExpansionSelectionAndPlaceWhenMembersComeBefore) {
    open(members(100));
    editor->toggleExpansion(member(50), false);
    editor->select(editor->tree()->children(member(50)).front());
    view->scrollRowToTop(rowOf(member(45)), 5);
    const int top = topOf(member(50));

    carryOver(members(100, "\"new\":{\"x\":1},\"m1\":0"));
    EXPECT_EQ(editor->outline().expanded().size(), 2);
    EXPECT_EQ(selectedRow(), rowOf(member(52)) + 1);
    EXPECT_EQ(topOf(member(52)), top);
}

TEST_F(TreeViewStateTests, GoesByTheNextRowWhenTheTopmostIsGone) {
    open(members(100));
    view->scrollRowToTop(rowOf(member(40)), 5);
    const int top = topOf(member(45));
    const std::string first = members(40);
    carryOver(members(100, first.substr(1, first.size() - 2), 45));
    EXPECT_EQ(topOf(member(40)), top);
}

TEST_F(TreeViewStateTests, SelectsTheContainerOfWhatIsGone) {
    open(R"({"a":{"b":1,"c":2}})");
    editor->setAllExpanded(true);
    editor->select(editor->tree()->children(member(0)).back());
    carryOver(R"({"x":0,"a":{"b":1}})");
    EXPECT_EQ(selectedKey(), "a");
}

TEST_F(TreeViewStateTests, TellsDuplicateKeysApart) {
    open(R"({"a":[1],"a":[2]})");
    editor->toggleExpansion(member(1), false);
    editor->select(member(1));
    carryOver(R"({"b":0,"a":[1],"a":[2]})");
    EXPECT_EQ(selectedRow(), 3);
    EXPECT_EQ(rowCount(), 5);
}

TEST_F(TreeViewStateTests, OfAnotherKindOfDocumentShowsItFromTheTop) {
    open(members(100));
    editor->setAllExpanded(true);
    view->scrollRowToTop(150, 0);
    editor->select(member(90));
    carryOver("[1,2]");
    EXPECT_EQ(rowCount(), 3);
    EXPECT_EQ(selectedRow(), 0);
    EXPECT_EQ(view->verticalAxis().position(), 0);
    carryOver("7");
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(TreeViewStateTests, IsAnnouncedOnceWithRowsOfTheNewTree) {
    open("[[1],2]");
    QSignalSpy outline(editor.get(), &TreeEditor::outlineChanged);
    bool areRowsCurrent = true;
    QObject::connect(editor.get(), &TreeEditor::outlineChanged, editor.get(),
                     [&] { areRowsCurrent = editor->hasCurrentRows() && editor->outline().rowCount() == 4; });
    carryOver("[[1],2,3]");
    EXPECT_EQ(outline.count(), 1);
    EXPECT_TRUE(areRowsCurrent);
}

TEST_F(TreeViewStateTests, RowsThatWereNotTakenAreNotTakenLater) {
    open("[[1],2]");
    editor->setPreparedRows(TreeEditor::PreparedRows{editor->outline(), editor->tree()->root()});
    editor->setPreparedRows(std::nullopt);
    replace("[1,2,3]");
    EXPECT_EQ(rowCount(), 4);
}

TEST_F(TreeViewStateTests, KnowsWhetherTheViewStillShowsIt) {
    open(members(100));
    const TreeViewState state = TreeViewState::of(*view);
    EXPECT_TRUE(state.isStillOf(*view));
    editor->toggleExpansion(member(3), false);
    EXPECT_FALSE(state.isStillOf(*view));
    editor->toggleExpansion(member(3), false);
    EXPECT_TRUE(state.isStillOf(*view));
    view->verticalAxis().scrollBy(3);
    EXPECT_FALSE(state.isStillOf(*view));
    view->verticalAxis().scrollBy(-3);
    editor->select(member(1));
    EXPECT_FALSE(state.isStillOf(*view));
}

TEST_F(TreeViewStateTests, IsNotCarriedOverWhenThatIsStopped) {
    open(members(100));
    std::stop_source source;
    source.request_stop();
    EXPECT_FALSE(TreeViewState::of(*view).carriedOverTo(*editor->tree(), source.get_token()).has_value());
}

} // namespace
} // namespace quelm
