#include "Quelm/TreeEditor/TreeEditor.h"
#include "Tests/Quelm/Support/EditedTreeTest.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeEditorTests : public EditedTreeTest {
protected:
    void replace(std::string_view text) { document->apply(JSONContent::fromText(TextRope(SharedText(text)))); }

    NodeID root() const { return tree().root(); }
    NodeID child(NodeID parent, std::int64_t index) const { return tree().children(parent)[index]; }
    bool isExpanded(NodeID id) const { return editor->outline().expanded().contains(id); }
};

TEST_F(TreeEditorTests, ItStartsWithNeitherRowsNorSelection) {
    const TreeEditor editor(documentWithText("[1]"));
    EXPECT_EQ(editor.outline().rowCount(), 0);
    EXPECT_EQ(editor.selection(), std::nullopt);
    EXPECT_EQ(editor.outlineRevision(), std::nullopt);
}

TEST_F(TreeEditorTests, TheFirstReloadShowsTheRootOpenAndSelectsIt) {
    open("[1,[2],{}]");
    EXPECT_EQ(rows(), "0+ 1 1 1 ");
    EXPECT_EQ(editor->selection(), root());
}

TEST_F(TreeEditorTests, ThereIsNoTreeWhileTheDocumentShowsItsText) {
    open("[1,[2]]");
    replace("[1");
    EXPECT_EQ(editor->tree(), nullptr);
    EXPECT_FALSE(editor->expandSelection(true));
    EXPECT_FALSE(editor->collapseOrSelectParent());
    editor->setAllExpanded(true);
    editor->toggleExpansion(NodeID{1}, true);
    EXPECT_EQ(editor->outline().rowCount(), 3);
}

TEST_F(TreeEditorTests, SelectingAnnouncesOnlyChanges) {
    open("[1,2]");
    QSignalSpy changes(editor.get(), &TreeEditor::selectionChanged);
    editor->select(child(root(), 1));
    editor->select(child(root(), 1));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(editor->selection(), child(root(), 1));
}

TEST_F(TreeEditorTests, TogglingFlipsOneContainer) {
    open("[[[1]],2]");
    const NodeID inner = child(root(), 0);
    editor->toggleExpansion(inner, false);
    EXPECT_EQ(rows(), "0+ 1+ 2 1 ");
    editor->toggleExpansion(inner, false);
    EXPECT_EQ(rows(), "0+ 1 1 ");
}

TEST_F(TreeEditorTests, TogglingRecursivelyTakesTheWholeSubtreeAlong) {
    open("[[[1]],[2]]");
    const NodeID inner = child(root(), 0);
    editor->toggleExpansion(inner, true);
    EXPECT_EQ(rows(), "0+ 1+ 2+ 3 1 ");
    editor->toggleExpansion(inner, true);
    editor->toggleExpansion(inner, false);
    EXPECT_EQ(rows(), "0+ 1+ 2 1 ");
}

TEST_F(TreeEditorTests, ExpandingTheSelectionTellsWhetherItDidAnything) {
    open("[[[1]],2]");
    editor->select(child(root(), 0));
    EXPECT_TRUE(editor->expandSelection(false));
    EXPECT_FALSE(editor->expandSelection(false));
    EXPECT_TRUE(editor->expandSelection(true));
    EXPECT_EQ(rows(), "0+ 1+ 2+ 3 1 ");
    EXPECT_TRUE(editor->expandSelection(true));
    editor->select(child(root(), 1));
    EXPECT_FALSE(editor->expandSelection(false));
    EXPECT_FALSE(editor->expandSelection(true));
}

TEST_F(TreeEditorTests, NothingIsExpandedWithoutASelection) {
    open("[[1]]");
    editor->setSelection(std::nullopt);
    EXPECT_FALSE(editor->expandSelection(true));
    EXPECT_FALSE(editor->collapseOrSelectParent());
}

TEST_F(TreeEditorTests, LeftCollapsesThenGoesUpAndStopsAtTheRoot) {
    open("[[[1]]]");
    const NodeID middle = child(root(), 0);
    const NodeID inner = child(middle, 0);
    editor->setAllExpanded(true);
    editor->select(child(inner, 0));
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_EQ(editor->selection(), inner);
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_EQ(editor->selection(), inner);
    EXPECT_FALSE(isExpanded(inner));
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_EQ(editor->selection(), middle);
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_EQ(editor->selection(), root());
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_FALSE(isExpanded(root()));
    EXPECT_FALSE(editor->collapseOrSelectParent());
    EXPECT_EQ(editor->selection(), root());
}

TEST_F(TreeEditorTests, CollapsingWithLeftIsNotRecursive) {
    open("[[[1]]]");
    editor->setAllExpanded(true);
    editor->select(child(root(), 0));
    EXPECT_TRUE(editor->collapseOrSelectParent());
    EXPECT_TRUE(editor->expandSelection(false));
    EXPECT_EQ(rows(), "0+ 1+ 2+ 3 ");
}

TEST_F(TreeEditorTests, ExpandingAllOpensEveryContainer) {
    open("{\"a\":{\"b\":[]},\"c\":[[1]]}");
    editor->setAllExpanded(true);
    EXPECT_EQ(rows(), "0+ 1+ 2+ 1+ 2+ 3 ");
}

TEST_F(TreeEditorTests, CollapsingAllLeavesTheRootAndItsChildren) {
    open("{\"a\":{\"b\":[]},\"c\":[[1]]}");
    editor->setAllExpanded(true);
    editor->setAllExpanded(false);
    EXPECT_EQ(rows(), "0+ 1 1 ");
    editor->toggleExpansion(child(root(), 1), false);
    EXPECT_EQ(rows(), "0+ 1 1+ 2 ");
}

TEST_F(TreeEditorTests, ANewRevisionReloadsTheRowsByItself) {
    open("[1,2]");
    QSignalSpy changes(editor.get(), &TreeEditor::outlineChanged);
    replace("[1,2,3]");
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(rows(), "0+ 1 1 1 ");
    EXPECT_EQ(editor->outlineRevision(), document->revision());
}

TEST_F(TreeEditorTests, ASelectionStaysWhenItsRowDoes) {
    open("[1,2,3]");
    editor->select(child(root(), 1));
    const NodeID selected = *editor->selection();
    replace("[4,5,6]");
    EXPECT_EQ(editor->selection(), selected);
}

TEST_F(TreeEditorTests, ASelectionWithoutARowGoesToTheRoot) {
    open("[1,2,3]");
    editor->select(child(root(), 2));
    QSignalSpy changes(editor.get(), &TreeEditor::selectionChanged);
    replace("[1]");
    EXPECT_EQ(editor->selection(), root());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(TreeEditorTests, ASelectionHiddenInACollapsedContainerGoesToTheRootAtAReload) {
    open("[[1]]");
    editor->setAllExpanded(true);
    editor->select(child(child(root(), 0), 0));
    editor->toggleExpansion(child(root(), 0), false);
    EXPECT_EQ(editor->selection(), child(child(root(), 0), 0));
    editor->reload();
    EXPECT_EQ(editor->selection(), root());
}

TEST_F(TreeEditorTests, TheExpansionOutlivesAReload) {
    open("[[1],[2]]");
    editor->toggleExpansion(child(root(), 1), false);
    editor->reload();
    EXPECT_EQ(rows(), "0+ 1 1+ 2 ");
}

TEST_F(TreeEditorTests, ASelectionThatIsNotInTheTreeDoesNothing) {
    open("[[1],2]");
    const NodeID selected = child(root(), 0);
    editor->select(selected);
    JSONContent content = document->content();
    content.tree->detach(selected);
    document->setContent(std::move(content));
    EXPECT_FALSE(editor->expandSelection(false));
    EXPECT_FALSE(editor->collapseOrSelectParent());
    editor->select(NodeID{1000});
    EXPECT_FALSE(editor->expandSelection(false));
    EXPECT_FALSE(editor->collapseOrSelectParent());
}

TEST_F(TreeEditorTests, RowsAndSelectionBelongToOneTreeWheneverAnythingIsAnnounced) {
    open("[[1],[2],[3]]");
    editor->select(child(root(), 2));
    int announcements = 0;
    const auto check = [&] {
        ++announcements;
        ASSERT_TRUE(editor->selection());
        EXPECT_TRUE(editor->outline().index(*editor->selection()));
        editor->outline().checkInvariants(tree());
    };
    QObject::connect(editor.get(), &TreeEditor::outlineChanged, check);
    QObject::connect(editor.get(), &TreeEditor::selectionChanged, check);
    replace("{}");
    EXPECT_EQ(announcements, 2);
}

} // namespace
} // namespace quelm
