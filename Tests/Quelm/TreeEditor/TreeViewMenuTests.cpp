#include "Quelm/TreeEditor/NodeMenu.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TreeWindow.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeViewMenuTests : public TreeWindow {
protected:
    void rightClick(const QPoint& place) {
        QTest::mouseClick(view->viewport(), Qt::RightButton, {}, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
        QApplication::sendEvent(view->viewport(), &event);
    }

    QImage paintedRow(std::int64_t row) { return painted().copy(*view->rowArea(row)); }
};

// Of a row.

TEST_F(TreeViewMenuTests, ARightClickOpensTheMenuOfTheRowUnderThePointer) {
    open("[1,2]");
    clickRow(2);
    rightClick(rowCentre(1));
    ASSERT_NE(view->openMenu(), nullptr);
    EXPECT_TRUE(view->openMenu()->isVisible());
    EXPECT_EQ(selectedRow(), 2) << "the selection stays until something is chosen";
    choose(QStringLiteral("Duplicar"));
    EXPECT_EQ(view->openMenu(), nullptr);
    EXPECT_EQ(json(), "[1,1,2]");
}

TEST_F(TreeViewMenuTests, TheRowOfAnOpenMenuIsOutlined) {
    open("[1,2]");
    clickRow(2);
    const QImage before = paintedRow(1);
    rightClick(rowCentre(1));
    EXPECT_NE(paintedRow(1), before);
    QTest::keyClick(view->openMenu(), Qt::Key_Escape);
    EXPECT_EQ(view->openMenu(), nullptr);
    EXPECT_EQ(paintedRow(1), before);
}

TEST_F(TreeViewMenuTests, AClosedMenuIsDeleted) {
    open("[1]");
    rightClick(rowCentre(1));
    const QPointer<QMenu> menu = view->openMenu();
    menu->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(menu.isNull());
}

TEST_F(TreeViewMenuTests, ARightClickBelowTheRowsOpensNoMenu) {
    open("[1]");
    rightClick(QPoint(50, view->viewport()->height() - 5));
    EXPECT_EQ(view->openMenu(), nullptr);
}

TEST_F(TreeViewMenuTests, ARightClickFirstCommitsTheOpenField) {
    open("[1,2]");
    doubleClickRow(1);
    enter(QStringLiteral("10"));
    rightClick(rowCentre(2));
    EXPECT_EQ(view->inlineField(), nullptr);
    EXPECT_EQ(json(), "[10,2]");
    EXPECT_NE(view->openMenu(), nullptr);
}

TEST_F(TreeViewMenuTests, EditingFromTheMenuOpensTheField) {
    open("[1,2]");
    rightClick(rowCentre(2));
    choose(QStringLiteral("Editar"));
    EXPECT_EQ(selectedRow(), 2);
    ASSERT_NE(view->inlineField(), nullptr);
    EXPECT_EQ(fieldText(), QStringLiteral("2"));
}

TEST_F(TreeViewMenuTests, TheKeysOfMenusOpenTheOneOfTheSelection) {
    for (const auto& [key, modifiers] :
         {std::pair(Qt::Key_Menu, Qt::NoModifier), std::pair(Qt::Key_F10, Qt::ShiftModifier)}) {
        open("[1,2]");
        clickRow(2);
        press(key, modifiers);
        ASSERT_NE(view->openMenu(), nullptr);
        choose(QStringLiteral("Eliminar"));
        EXPECT_EQ(json(), "[1]");
    }
}

TEST_F(TreeViewMenuTests, TheMenuOfASelectionOutOfSightIsOpenedWhereItCanBeSeen) {
    open(arrayOfZeros(1000));
    clickRow(5);
    view->verticalAxis().setPosition(8000);
    press(Qt::Key_Menu);
    EXPECT_TRUE(isWhollyVisible(5));
    EXPECT_NE(view->openMenu(), nullptr);
}

TEST_F(TreeViewMenuTests, AKeyReportedTwiceOpensOneMenu) {
    open("[1]");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), view->mapToGlobal(QPoint(1, 1)));
    QApplication::sendEvent(view, &event);
    const QMenu* menu = view->openMenu();
    ASSERT_NE(menu, nullptr);
    press(Qt::Key_Menu);
    EXPECT_EQ(view->openMenu(), menu);
    EXPECT_EQ(view->findChildren<NodeMenu*>().size(), 1);
}

TEST_F(TreeViewMenuTests, AnotherContentClosesTheMenu) {
    open("[1]");
    rightClick(rowCentre(1));
    replace("[2]");
    EXPECT_EQ(view->openMenu(), nullptr);
    clickBadge(1);
    replace("[3]");
    EXPECT_EQ(view->openMenu(), nullptr);
}

// Of a badge.

TEST_F(TreeViewMenuTests, AClickOnABadgeOffersTheOtherKinds) {
    open("[1,2]");
    clickBadge(2);
    ASSERT_NE(view->openMenu(), nullptr);
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_EQ(view->openMenu()->actions().size(), 6);
    EXPECT_FALSE(menuItem(QStringLiteral("Número"))->isEnabled());
    EXPECT_TRUE(menuItem(QStringLiteral("Texto"))->isEnabled());
    choose(QStringLiteral("Texto"));
    EXPECT_EQ(json(), R"([1,"2"])");
    undoManager->undo();
    EXPECT_EQ(json(), "[1,2]");
}

TEST_F(TreeViewMenuTests, TheMenuOfABadgeIsRightBelowIt) {
    open("[1]");
    clickBadge(1);
    const QRect badge = view->partArea(1, TreeRowPart::badge).toRect();
    const QPoint corner = view->viewport()->mapFromGlobal(view->openMenu()->pos());
    EXPECT_EQ(corner.x(), badge.left());
    EXPECT_GE(corner.y(), badge.bottom());
    EXPECT_LE(corner.y(), badge.bottom() + 5);
}

// Hovering.

TEST_F(TreeViewMenuTests, ABadgeUnderThePointerShowsThatItCanBeClicked) {
    open("[1,2]");
    // The pointer may be anywhere by now.
    QTest::mouseMove(view->viewport(), rowCentre(2));
    const QImage before = paintedRow(1);
    const QPoint badge = view->partArea(1, TreeRowPart::badge).center().toPoint();
    QTest::mouseMove(view->viewport(), badge);
    EXPECT_NE(paintedRow(1), before);
    EXPECT_EQ(view->viewport()->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseMove(view->viewport(), rowCentre(1));
    EXPECT_EQ(paintedRow(1), before);
    EXPECT_EQ(view->viewport()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(TreeViewMenuTests, ThePointerThatLeavesTheViewTakesTheHoverWithIt) {
    open("[1,2]");
    // The pointer may be anywhere by now.
    QTest::mouseMove(view->viewport(), rowCentre(2));
    const QImage before = paintedRow(1);
    QTest::mouseMove(view->viewport(), view->partArea(1, TreeRowPart::badge).center().toPoint());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(view->viewport(), &leave);
    EXPECT_EQ(paintedRow(1), before);
}

TEST_F(TreeViewMenuTests, ScrollingUnderThePointerMovesTheHover) {
    open(arrayOfZeros(100));
    QTest::mouseMove(view->viewport(), rowCentre(2));
    QTest::mouseMove(view->viewport(), view->partArea(3, TreeRowPart::badge).center().toPoint());
    EXPECT_EQ(view->viewport()->cursor().shape(), Qt::PointingHandCursor);
    view->verticalAxis().setPosition(view->rowStyle().rowHeight / 2);
    EXPECT_EQ(view->viewport()->cursor().shape(), Qt::ArrowCursor) << "between two badges";
    view->verticalAxis().setPosition(view->rowStyle().rowHeight);
    EXPECT_EQ(view->viewport()->cursor().shape(), Qt::PointingHandCursor);
}

} // namespace
} // namespace quelm
