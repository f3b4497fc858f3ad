#include "Quelm/Foundation/Appearance.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TreeWindow.h"

#include <QAccessible>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeViewTests : public TreeWindow {};

TEST_F(TreeViewTests, ShowingTheViewFillsItAndSelectsTheRoot) {
    open("{\"a\":1,\"b\":[true]}");
    EXPECT_EQ(rowCount(), 3);
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(TreeViewTests, ANewRevisionKeepsTheSelectionWhereItsRowIsStillThere) {
    open("[1,2,3]");
    clickRow(2);
    replace("[4,5,6]");
    EXPECT_EQ(selectedRow(), 2);
    replace("[4]");
    EXPECT_EQ(selectedRow(), 0);
}

// Mouse.

TEST_F(TreeViewTests, AClickSelectsARow) {
    open("[1,[2],3]");
    clickRow(2);
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_EQ(rowCount(), 4);
}

TEST_F(TreeViewTests, AClickBelowTheRowsLeavesTheSelection) {
    open("[1]");
    clickRow(1);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(50, view->viewport()->height() - 5));
    EXPECT_EQ(selectedRow(), 1);
}

TEST_F(TreeViewTests, AClickOnTheChevronTogglesWithoutSelecting) {
    open("[[1,2],3]");
    clickChevron(1);
    EXPECT_EQ(rowCount(), 5);
    EXPECT_EQ(selectedRow(), 0);
    clickChevron(1);
    EXPECT_EQ(rowCount(), 3);
}

TEST_F(TreeViewTests, AClickOnTheChevronWithAltOrShiftTakesTheSubtree) {
    for (const Qt::KeyboardModifier modifier : {Qt::AltModifier, Qt::ShiftModifier}) {
        open("[[[[1]]],3]");
        clickChevron(1, modifier);
        EXPECT_EQ(rowCount(), 6);
        clickChevron(1, modifier);
        EXPECT_EQ(rowCount(), 3);
        clickChevron(1);
        EXPECT_EQ(rowCount(), 4) << "the inner ones were collapsed too";
    }
}

TEST_F(TreeViewTests, TwoQuickClicksOnTheChevronToggleTwice) {
    open("[[1]]");
    const QPoint place = chevron(1);
    // The second press of a double click arrives as an event of another type.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(TreeViewTests, ADoubleClickOnAContainerOnlySelectsIt) {
    open("[[1]]");
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, rowCentre(1));
    EXPECT_EQ(rowCount(), 2);
    EXPECT_EQ(selectedRow(), 1);
}

// Keyboard.

TEST_F(TreeViewTests, UpAndDownMoveTheSelectionAndStopAtTheEnds) {
    open("[1,2]");
    press(Qt::Key_Down);
    EXPECT_EQ(selectedRow(), 1);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedRow(), 2);
    press(Qt::Key_Up);
    EXPECT_EQ(selectedRow(), 1);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(TreeViewTests, HomeAndEndGoToTheFirstAndLastRow) {
    open(arrayOfZeros(1000));
    press(Qt::Key_End);
    EXPECT_EQ(selectedRow(), 1000);
    EXPECT_TRUE(isWhollyVisible(1000));
    press(Qt::Key_Home);
    EXPECT_EQ(selectedRow(), 0);
    EXPECT_TRUE(isWhollyVisible(0));
}

TEST_F(TreeViewTests, PagesGoAsFarAsTheViewShows) {
    open(arrayOfZeros(1000));
    const std::int64_t page = view->viewport()->height() / view->rowStyle().rowHeight - 1;
    press(Qt::Key_PageDown);
    EXPECT_EQ(selectedRow(), page);
    EXPECT_TRUE(isWhollyVisible(page));
    press(Qt::Key_PageDown);
    EXPECT_EQ(selectedRow(), 2 * page);
    EXPECT_TRUE(isWhollyVisible(2 * page));
    press(Qt::Key_PageUp);
    press(Qt::Key_PageUp);
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(TreeViewTests, RightExpandsOnceAndLeftCollapsesThenGoesUp) {
    open("[[[1]]]");
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_EQ(rowCount(), 3);
    press(Qt::Key_Right);
    EXPECT_EQ(rowCount(), 3);
    EXPECT_EQ(selectedRow(), 1);
    press(Qt::Key_Left);
    EXPECT_EQ(rowCount(), 2);
    EXPECT_EQ(selectedRow(), 1);
    press(Qt::Key_Left);
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(TreeViewTests, RightWithAltExpandsTheWholeSubtreeEvenOfAnExpandedRow) {
    open("[[[[1]]]]");
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(rowCount(), 5);
}

TEST_F(TreeViewTests, AKeyThatDoesNothingIsPassedOn) {
    open("[1]");
    EXPECT_FALSE(isAccepted(Qt::Key_Right)) << "the root is expanded already";
    press(Qt::Key_Left);
    EXPECT_FALSE(isAccepted(Qt::Key_Left)) << "the root is collapsed already";
    EXPECT_TRUE(isAccepted(Qt::Key_Right));
    EXPECT_FALSE(isAccepted(Qt::Key_X));
    EXPECT_FALSE(isAccepted(Qt::Key_Down, Qt::ControlModifier));
}

TEST_F(TreeViewTests, ArrowsExpandAndCollapseWhateverElseIsPressed) {
    open("[[[1]],2]");
    press(Qt::Key_Down);
    press(Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(rowCount(), 5);
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(rowCount(), 3);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(rowCount(), 5);
}

TEST_F(TreeViewTests, ASelectionOfNoNodeAtAllDoesNothing) {
    open("[1]");
    for (const int raw : {-5, 0, 1'000'000}) {
        editor->select(NodeID{raw});
        press(Qt::Key_Delete);
        press(Qt::Key_Return);
        EXPECT_EQ(editor->tree()->nodeCount(), 2);
        press(Qt::Key_Down);
        EXPECT_GE(selectedRow(), 0);
    }
}

TEST_F(TreeViewTests, ACollapseThatHidesTheSelectionTakesItToWhatCanBeSeen) {
    open("[[[1,2]],3]");
    clickChevron(1, Qt::ShiftModifier);
    clickRow(4);
    clickChevron(1);
    EXPECT_EQ(selectedRow(), 1);
    clickChevron(1, Qt::ShiftModifier);
    clickRow(4);
    editor->setAllExpanded(false);
    EXPECT_EQ(selectedRow(), 1);
}

TEST_F(TreeViewTests, WithTheSelectionHiddenAnArrowComesBackToItsVisibleContainer) {
    open("[[1,2],3]");
    const NodeID hidden = editor->tree()->children(editor->outline().rowID(1))[0];
    editor->select(hidden);
    EXPECT_EQ(selectedRow(), -1);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedRow(), 1);
}

// Scrolling.

TEST_F(TreeViewTests, TheLastOfAMillionRowsIsReachedAndPainted) {
    open(arrayOfZeros(1'000'000));
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    EXPECT_TRUE(isWhollyVisible(1'000'000));
    const QRect last = *view->rowArea(1'000'000);
    EXPECT_EQ(last.bottom() + view->rowStyle().verticalMargin, view->viewport()->height() - 1);
    clickRow(1'000'000);
    EXPECT_EQ(selectedRow(), 1'000'000);
    EXPECT_FALSE(isBlank(last.adjusted(20, 0, -20, 0)));
}

TEST_F(TreeViewTests, EveryRowIsWhereArithmeticPutsIt) {
    open(arrayOfZeros(200));
    view->verticalAxis().setPosition(1234);
    for (int y = 0; y < view->viewport()->height(); y += 7) {
        const auto row = view->rowAt(QPoint(30, y));
        ASSERT_TRUE(row);
        EXPECT_TRUE(view->rowArea(*row)->contains(QPoint(30, y)));
    }
    EXPECT_EQ(view->rowArea(0), std::nullopt);
}

TEST_F(TreeViewTests, TheWheelScrollsRowsAndATouchpadPixels) {
    open(arrayOfZeros(1000));
    turnWheel(QPoint(), QPoint(0, -120));
    EXPECT_EQ(view->verticalAxis().position(), QApplication::wheelScrollLines() * view->rowStyle().rowHeight);
    view->verticalAxis().setPosition(0);
    turnWheel(QPoint(0, -13), QPoint(0, -50));
    EXPECT_EQ(view->verticalAxis().position(), 13);
}

TEST_F(TreeViewTests, SmallTurnsOfAFineWheelAddUp) {
    open(arrayOfZeros(1000));
    for (int turn = 0; turn < 120; ++turn)
        turnWheel(QPoint(), QPoint(0, -1));
    EXPECT_NEAR(static_cast<double>(view->verticalAxis().position()),
                QApplication::wheelScrollLines() * view->rowStyle().rowHeight, 1);
}

TEST_F(TreeViewTests, ExpandingARowLeavesItInItsPlace) {
    open("[" + arrayOfZeros(500) + "," + arrayOfZeros(500) + "]");
    clickChevron(1);
    view->verticalAxis().setPosition(300);
    const std::int64_t top = view->verticalAxis().position();
    clickRow(20);
    press(Qt::Key_Left);
    EXPECT_EQ(selectedRow(), 1);
    EXPECT_LT(view->verticalAxis().position(), top) << "the parent was scrolled into view";
    press(Qt::Key_Left);
    EXPECT_EQ(rowCount(), 3);
    EXPECT_EQ(view->verticalAxis().position(), 0);
}

TEST_F(TreeViewTests, DeepRowsAreScrolledToSideways) {
    constexpr std::int64_t depth = 100'000;
    open(nestedArrays(depth));
    EXPECT_EQ(view->horizontalAxis().maximum(), 0);
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(rowCount(), depth + 1);
    press(Qt::Key_End);
    EXPECT_EQ(selectedRow(), depth);
    QApplication::processEvents();
    EXPECT_TRUE(isWhollyVisible(depth)) << "the scroll bar that has come up does not cover it";
    const QRectF badge = view->partArea(depth, TreeRowPart::badge);
    EXPECT_TRUE(QRectF(view->viewport()->rect()).contains(badge));
    EXPECT_FALSE(isBlank(badge.toRect()));
    press(Qt::Key_Home);
    EXPECT_EQ(view->horizontalAxis().position(), 0);
}

// What is painted.

TEST_F(TreeViewTests, TheSelectionIsPaintedAndFollowsTheFocus) {
    open("[1,2]");
    const QImage focused = painted();
    press(Qt::Key_Down);
    EXPECT_NE(painted(), focused);
    press(Qt::Key_Up);
    EXPECT_EQ(painted(), focused);
    view->clearFocus();
    EXPECT_NE(painted(), focused);
}

TEST_F(TreeViewTests, RowsAlternate) {
    open("[1,1,1,1]");
    const auto background = [this](std::int64_t row) {
        const QRect area = *view->rowArea(row);
        return painted().pixelColor(area.right() - 30, area.center().y());
    };
    EXPECT_NE(background(1), background(2));
    EXPECT_EQ(background(1), background(3));
    EXPECT_EQ(background(2), background(4));
}

TEST_F(TreeViewTests, AnotherPaletteIsTakenUpAtOnce) {
    open("[1,2]");
    const QImage light = painted();
    window->setPalette(ownPalette(Appearance::dark));
    const QImage dark = painted();
    EXPECT_NE(light, dark);
    EXPECT_LT(dark.pixelColor(dark.width() / 2, dark.height() - 3).lightness(), 64);
}

// Tooltips.

TEST_F(TreeViewTests, TooltipsSayWhatARowHasNoRoomFor) {
    const std::string key(500, 'k');
    const std::string value = "principio " + std::string(260, 'v');
    open("{\"" + key + "\":\"" + value + "\",\"a\":1,\"a\":2}");
    EXPECT_TRUE(tip(1, TreeRowPart::label).contains(QStringLiteral("kkkkk")));
    EXPECT_TRUE(tip(1, TreeRowPart::value).contains(QStringLiteral("principio")));
    EXPECT_EQ(tip(2, TreeRowPart::label), QString());
    EXPECT_EQ(tip(2, TreeRowPart::value), QString());
    EXPECT_EQ(tip(2, TreeRowPart::duplicateMark), QStringLiteral("Clave duplicada"));
    EXPECT_EQ(tip(2, TreeRowPart::badge), QStringLiteral("Número · clic para cambiar el tipo"));
    EXPECT_EQ(view->toolTipAt(QPoint(10, view->viewport()->height() - 3)), QString());
}

TEST_F(TreeViewTests, EveryMemberWithADuplicateKeyIsMarked) {
    open("{\"a\":1,\"b\":2,\"a\":3}");
    EXPECT_FALSE(view->partArea(1, TreeRowPart::duplicateMark).isEmpty());
    EXPECT_TRUE(view->partArea(2, TreeRowPart::duplicateMark).isEmpty());
    EXPECT_FALSE(view->partArea(3, TreeRowPart::duplicateMark).isEmpty());
}

TEST_F(TreeViewTests, BetweenAChangeOfTheContentAndItsReloadNothingOfTheFormerTreeIsUsed) {
    open("[1,2,3]");
    const QPoint badge = view->partArea(2, TreeRowPart::badge).center().toPoint();
    ASSERT_FALSE(view->toolTipAt(badge).isEmpty());
    int heard = 0;
    QObject::connect(document.get(), &JSONDocument::contentChanged, [&] {
        ++heard;
        EXPECT_FALSE(editor->hasCurrentRows());
        EXPECT_TRUE(view->toolTipAt(badge).isEmpty());
        EXPECT_EQ(QAccessible::queryAccessibleInterface(view)->childCount(), 0);
        view->setPalette(ownPalette(Appearance::dark));
        view->viewport()->repaint();
        press(Qt::Key_Left);
    });
    replace("7");
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(rowCount(), 1);
    EXPECT_EQ(selectedRow(), 0);
}

} // namespace
} // namespace quelm
