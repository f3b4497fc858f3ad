#include "Tests/Quelm/TreeEditor/TreeViewAccessibleTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TreeViewAccessibleTests : public TreeViewAccessibleTest {};

class SpecialTreeView : public TreeView {
public:
    using TreeView::TreeView;
};

TEST_F(TreeViewAccessibleTests, AViewIsATreeAndATableOfOneColumn) {
    open("[1,2]");
    EXPECT_EQ(whole().role(), QAccessible::Tree);
    EXPECT_EQ(whole().object(), view);
    EXPECT_TRUE(whole().isValid());
    EXPECT_EQ(whole().text(QAccessible::Name), u"Árbol");
    EXPECT_EQ(whole().parent(), QAccessible::queryAccessibleInterface(window.get()));
    ASSERT_NE(whole().tableInterface(), nullptr);
    EXPECT_NE(whole().actionInterface(), nullptr);
    EXPECT_EQ(table().rowCount(), 3);
    EXPECT_EQ(table().columnCount(), 1);
    EXPECT_TRUE(whole().state().focusable);
    EXPECT_TRUE(whole().state().focused);
}

TEST_F(TreeViewAccessibleTests, AViewOfASubclassIsOneToo) {
    open("[1,2]");
    const SpecialTreeView special(*editor);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(const_cast<SpecialTreeView*>(&special));
    EXPECT_EQ(interface->role(), QAccessible::Tree);
    EXPECT_EQ(interface->childCount(), 3);
}

TEST_F(TreeViewAccessibleTests, ItsChildrenAreTheVisibleRows) {
    open("{\"a\":[1,2],\"b\":3}");
    EXPECT_EQ(whole().childCount(), 3);
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(whole().childCount(), 5);
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(row(index).role(), QAccessible::TreeItem);
        EXPECT_EQ(row(index).parent(), &whole());
        EXPECT_EQ(whole().indexOfChild(&row(index)), index);
        EXPECT_EQ(table().cellAt(index, 0), &row(index));
        EXPECT_EQ(row(index).childCount(), 0);
    }
    EXPECT_EQ(whole().child(-1), nullptr);
    EXPECT_EQ(whole().child(5), nullptr);
}

TEST_F(TreeViewAccessibleTests, ACellOutsideOfTheTableIsThereAndInvalid) {
    open("[1,2]");
    for (QAccessibleInterface* cell : {table().cellAt(3, 0), table().cellAt(-1, 0), table().cellAt(0, 1)}) {
        ASSERT_NE(cell, nullptr);
        EXPECT_FALSE(cell->isValid());
        EXPECT_TRUE(cell->state().invalid);
        ASSERT_NE(cell->tableCellInterface(), nullptr);
        EXPECT_EQ(cell->tableCellInterface()->rowIndex(), -1);
        EXPECT_EQ(whole().indexOfChild(cell), -1);
    }
    const QAccessible::Id outside = QAccessible::uniqueId(table().cellAt(3, 0));
    window.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(outside), nullptr);
}

TEST_F(TreeViewAccessibleTests, WhatIsNoRowOfItHasNoIndex) {
    open("[1,2]");
    EXPECT_EQ(whole().indexOfChild(nullptr), -1);
    EXPECT_EQ(whole().indexOfChild(&whole()), -1);
    TreeView other(*editor);
    const QAccessibleInterface* row = QAccessible::queryAccessibleInterface(&other)->child(1);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(whole().indexOfChild(row), -1);
}

TEST_F(TreeViewAccessibleTests, ARowIsACellOfTheTable) {
    open("[1,2]");
    press(Qt::Key_Down);
    QAccessibleTableCellInterface* cell = row(1).tableCellInterface();
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->rowIndex(), 1);
    EXPECT_EQ(cell->columnIndex(), 0);
    EXPECT_EQ(cell->rowExtent(), 1);
    EXPECT_EQ(cell->columnExtent(), 1);
    EXPECT_EQ(cell->table(), &whole());
    EXPECT_TRUE(cell->isSelected());
    EXPECT_FALSE(row(2).tableCellInterface()->isSelected());
}

TEST_F(TreeViewAccessibleTests, TheSelectedRowIsTheTablesAndCanBeChanged) {
    open("[1,2]");
    press(Qt::Key_Down);
    EXPECT_THAT(table().selectedRows(), ElementsAre(1));
    EXPECT_EQ(table().selectedRowCount(), 1);
    EXPECT_EQ(table().selectedCellCount(), 1);
    EXPECT_THAT(table().selectedCells(), ElementsAre(&row(1)));
    EXPECT_TRUE(table().isRowSelected(1));
    EXPECT_FALSE(table().isRowSelected(2));
    EXPECT_THAT(table().selectedColumns(), IsEmpty());

    EXPECT_TRUE(table().selectRow(2));
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_FALSE(table().selectRow(3));
    EXPECT_FALSE(table().selectRow(-1));
    EXPECT_FALSE(table().unselectRow(2));
    EXPECT_EQ(selectedRow(), 2);
}

TEST_F(TreeViewAccessibleTests, ASelectionThatIsOutOfSightIsNotSelectedRow) {
    open("[[1]]");
    editor->select(editor->tree()->children(editor->outline().rowID(1))[0]);
    EXPECT_THAT(table().selectedRows(), IsEmpty());
    EXPECT_THAT(table().selectedCells(), IsEmpty());
    EXPECT_EQ(whole().focusChild(), &whole());
}

TEST_F(TreeViewAccessibleTests, TheSelectedRowHasTheFocusOfTheView) {
    open("[1,2]");
    press(Qt::Key_Down);
    EXPECT_EQ(whole().focusChild(), &row(1));
    view->clearFocus();
    EXPECT_EQ(whole().focusChild(), nullptr);
}

// Rows on the screen.

TEST_F(TreeViewAccessibleTests, ARowIsWhereItIsOnTheScreen) {
    open(arrayOfZeros(1000));
    const QRect area = view->rowArea(2).value();
    EXPECT_EQ(row(2).rect(), QRect(global(area.topLeft()), area.size()));
    EXPECT_FALSE(state(2).offscreen);
    EXPECT_FALSE(state(2).invisible);
    EXPECT_EQ(row(900).rect(), QRect());
    EXPECT_TRUE(state(900).offscreen);

    press(Qt::Key_End);
    EXPECT_TRUE(state(2).offscreen);
    EXPECT_FALSE(state(1000).offscreen);
    EXPECT_FALSE(row(1000).rect().isEmpty());
}

TEST_F(TreeViewAccessibleTests, TheRowAtAPlaceOfTheScreenIsFound) {
    open("[1,2]");
    const QPoint place = global(rowCentre(1));
    EXPECT_EQ(whole().childAt(place.x(), place.y()), &row(1));
    const QPoint below = global({50, view->viewport()->height() - 5});
    EXPECT_EQ(whole().childAt(below.x(), below.y()), nullptr);
    const QPoint outside = global({50, -5});
    EXPECT_EQ(whole().childAt(outside.x(), outside.y()), nullptr);
}

TEST_F(TreeViewAccessibleTests, RowsOfAHiddenViewAreInvisible) {
    open("[1,2]");
    view->hide();
    EXPECT_TRUE(state(1).invisible);
}

// Cost and lifetime.

TEST_F(TreeViewAccessibleTests, ARowOfAMillionIsMadeAlone) {
    open(arrayOfZeros(1'000'000));
    EXPECT_EQ(whole().childCount(), 1'000'001);
    EXPECT_EQ(name(900'000), QLocale().toString(899'999) + QStringLiteral(", Número, 0"));
    EXPECT_EQ(tree().knownRows().size(), 1U);
    EXPECT_EQ(whole().indexOfChild(&row(900'000)), 900'000);
}

TEST_F(TreeViewAccessibleTests, OfTheRowsAskedForTheLastOnesAndTheSelectedOneStay) {
    open(arrayOfZeros(10'000));
    press(Qt::Key_Down);
    const QAccessible::Id selected = QAccessible::uniqueId(&row(1));
    const QAccessible::Id old = QAccessible::uniqueId(&row(2));
    for (int index = 3; index < 5'000; ++index)
        EXPECT_EQ(row(index).tableCellInterface()->rowIndex(), index);
    EXPECT_EQ(tree().knownRows().size(), TreeRowAccessibleCache::mostRows);
    EXPECT_EQ(QAccessible::accessibleInterface(old), nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(selected), &row(1));
    EXPECT_EQ(QAccessible::uniqueId(&row(4'999)), QAccessible::uniqueId(&row(4'999)));
}

TEST_F(TreeViewAccessibleTests, ARowFollowsItsNode) {
    open("[10,20,30]");
    QAccessibleInterface& thirty = row(3);
    clickRow(1);
    editor->remove();
    EXPECT_EQ(&row(2), &thirty);
    EXPECT_EQ(thirty.text(QAccessible::Name), u"1, Número, 30");
    EXPECT_EQ(thirty.tableCellInterface()->rowIndex(), 2);
}

TEST_F(TreeViewAccessibleTests, ARowThatIsGoneIsInvalidUntilItComesBack) {
    open("[[7]]");
    editor->toggleExpansion(editor->outline().rowID(1), false);
    QAccessibleInterface& inner = row(2);
    editor->toggleExpansion(editor->outline().rowID(1), false);
    EXPECT_FALSE(inner.isValid());
    EXPECT_TRUE(inner.state().invalid);
    EXPECT_EQ(inner.text(QAccessible::Name), QString());
    EXPECT_EQ(inner.text(QAccessible::Description), QString());
    EXPECT_EQ(inner.rect(), QRect());
    EXPECT_EQ(inner.window(), nullptr);
    EXPECT_EQ(inner.childCount(), 0);
    EXPECT_EQ(inner.tableCellInterface()->rowIndex(), -1);
    EXPECT_FALSE(inner.tableCellInterface()->isSelected());
    EXPECT_THAT(inner.actionInterface()->actionNames(), IsEmpty());
    inner.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(selectedRow(), 0);
    EXPECT_EQ(whole().indexOfChild(&inner), -1);

    editor->toggleExpansion(editor->outline().rowID(1), false);
    EXPECT_TRUE(inner.isValid());
    EXPECT_EQ(&row(2), &inner);
}

TEST_F(TreeViewAccessibleTests, ARowNeverStandsForANodeOfAnotherRevision) {
    open("[1,2]");
    const QAccessible::Id former = QAccessible::uniqueId(&row(2));
    const TreeRowAccessible own(tree(), editor->outline().rowID(2));
    replace("[1,2]");
    EXPECT_FALSE(own.isValid());
    EXPECT_EQ(name(2), u"1, Número, 2");
    EXPECT_EQ(QAccessible::accessibleInterface(former), nullptr);
}

TEST_F(TreeViewAccessibleTests, AViewWithoutATreeHasNoRows) {
    open("[1,2]");
    const TreeRowAccessible own(tree(), editor->outline().rowID(2));
    document->apply(JSONContent::fromText(TextRope(SharedText(std::string_view("[")))));
    EXPECT_EQ(whole().childCount(), 0);
    EXPECT_EQ(whole().child(0), nullptr);
    EXPECT_FALSE(own.isValid());
    EXPECT_FALSE(table().selectRow(0));
    EXPECT_THAT(table().selectedRows(), IsEmpty());
}

TEST_F(TreeViewAccessibleTests, RowsGoWithTheirView) {
    open("[1,2]");
    const QAccessible::Id whole = QAccessible::uniqueId(&this->whole());
    const QAccessible::Id row = QAccessible::uniqueId(&this->row(1));
    window.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(whole), nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(row), nullptr);
}

TEST_F(TreeViewAccessibleTests, AViewThatIsBeingDestroyedIsInvalid) {
    open("[1,2]");
    // Not of Qt's, which it deletes at this signal.
    const TreeViewAccessible interface(*view);
    const QAccessible::Id row = QAccessible::uniqueId(interface.child(1));
    bool wasAsked = false;
    QObject::connect(view, &QObject::destroyed, [&] {
        wasAsked = true;
        EXPECT_FALSE(interface.isValid());
        EXPECT_TRUE(interface.state().invalid);
        EXPECT_EQ(interface.childCount(), 0);
        EXPECT_EQ(interface.childAt(10, 10), nullptr);
        EXPECT_EQ(interface.focusChild(), nullptr);
        EXPECT_THAT(interface.selectedRows(), IsEmpty());
        EXPECT_FALSE(QAccessible::accessibleInterface(row)->isValid());
        EXPECT_TRUE(QAccessible::accessibleInterface(row)->state().invalid);
    });
    window.reset();
    EXPECT_TRUE(wasAsked);
}

} // namespace
} // namespace quelm
