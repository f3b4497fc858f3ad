#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TreeWindow.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeViewKeyTests : public TreeWindow {};

// Removing.

TEST_F(TreeViewKeyTests, DeleteRemovesTheSelectionAndUndoBringsItBack) {
    open("[1,2,3]");
    clickRow(2);
    press(Qt::Key_Delete);
    EXPECT_EQ(json(), "[1,3]");
    EXPECT_EQ(selectedRow(), 2);
    undoManager->undo();
    EXPECT_EQ(json(), "[1,2,3]");
    EXPECT_EQ(selectedRow(), 2);
    undoManager->redo();
    EXPECT_EQ(json(), "[1,3]");
}

TEST_F(TreeViewKeyTests, BackspaceRemovesNothing) {
    open("[1]");
    clickRow(1);
    press(Qt::Key_Backspace);
    EXPECT_EQ(json(), "[1]");
}

// Where the selection is shown.

TEST_F(TreeViewKeyTests, AnEditOutOfSightIsScrolledTo) {
    open(arrayOfZeros(1000));
    clickRow(3);
    view->verticalAxis().setPosition(9000);
    press(Qt::Key_Delete);
    EXPECT_TRUE(isWhollyVisible(3));
    view->verticalAxis().setPosition(9000);
    undoManager->undo();
    EXPECT_EQ(selectedRow(), 3);
    EXPECT_TRUE(isWhollyVisible(3));
}

TEST_F(TreeViewKeyTests, AnEditOfADeepRowIsScrolledToSideways) {
    open(nestedArrays(200));
    press(Qt::Key_Right, Qt::AltModifier);
    press(Qt::Key_End);
    view->horizontalAxis().setPosition(0);
    editor->duplicate();
    EXPECT_TRUE(view->viewport()->rect().contains(view->partArea(selectedRow(), TreeRowPart::badge).toRect()));
}

TEST_F(TreeViewKeyTests, WhenTheSelectedNodeIsGoneTheArrowsGoOnFromItsPlace) {
    for (const auto& [key, expected] :
         {std::pair(Qt::Key_Down, 41), std::pair(Qt::Key_Up, 40), std::pair(Qt::Key_Home, 0)}) {
        open(arrayOfZeros(100));
        clickRow(10);
        view->scrollToRow(40);
        clickRow(40);
        editor->duplicate();
        EXPECT_EQ(selectedRow(), 41);
        undoManager->undo();
        EXPECT_EQ(selectedRow(), -1);
        press(key);
        EXPECT_EQ(selectedRow(), expected);
        EXPECT_TRUE(isWhollyVisible(expected));
    }
}

TEST_F(TreeViewKeyTests, KeysThatNeedASelectionDoNothingWhenItsNodeIsGone) {
    open("[1]");
    clickRow(1);
    editor->duplicate();
    undoManager->undo();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F2, Qt::Key_Delete, Qt::Key_Menu, Qt::Key_Right, Qt::Key_Left})
        press(key);
    EXPECT_EQ(json(), "[1]");
    EXPECT_EQ(view->inlineField(), nullptr);
    EXPECT_EQ(view->openMenu(), nullptr);
}

// Finding a key by typing.

TEST_F(TreeViewKeyTests, TypingSelectsTheRowOfAKey) {
    open(R"({"uno":1,"dos":2,"doce":3})");
    type(QStringLiteral("d"));
    EXPECT_EQ(selectedKey(), "dos");
    type(QStringLiteral("oc"));
    EXPECT_EQ(selectedKey(), "doce");
}

TEST_F(TreeViewKeyTests, TheRowThatTypingFindsIsScrolledTo) {
    std::string text = "{";
    for (int member = 0; member < 500; ++member)
        text += "\"k" + std::to_string(member) + "\":0,";
    open(text + "\"zeta\":1}");
    type(QStringLiteral("z"));
    EXPECT_EQ(selectedRow(), 501);
    EXPECT_TRUE(isWhollyVisible(501));
}

TEST_F(TreeViewKeyTests, AnotherKeyEndsTheTypedText) {
    open(R"({"ab":1,"b":2,"ba":3})");
    type(QStringLiteral("a"));
    EXPECT_EQ(selectedKey(), "ab");
    press(Qt::Key_Down);
    type(QStringLiteral("b"));
    EXPECT_EQ(selectedKey(), "ba");
    press(Qt::Key_Escape);
    type(QStringLiteral("a"));
    EXPECT_EQ(selectedKey(), "ab");
}

TEST_F(TreeViewKeyTests, AClickOrAnEditEndsTheTypedText) {
    open(R"({"ab":1,"b":2})");
    type(QStringLiteral("a"));
    clickRow(1);
    type(QStringLiteral("b"));
    EXPECT_EQ(selectedKey(), "b");
    editor->duplicate();
    type(QStringLiteral("a"));
    EXPECT_EQ(selectedKey(), "ab");
}

TEST_F(TreeViewKeyTests, HoldingShiftForACapitalDoesNotEndTheTypedText) {
    open(R"({"a":1,"aB":2})");
    type(QStringLiteral("a"));
    press(Qt::Key_Shift);
    QTest::keyClick(view, Qt::Key_B, Qt::ShiftModifier);
    EXPECT_EQ(selectedKey(), "aB");
}

TEST_F(TreeViewKeyTests, ASearchThroughManyRowsIsStoppedByAReload) {
    std::string text = "{";
    for (int member = 0; member < 200'000; ++member)
        text += "\"k" + std::to_string(member) + "\":0,";
    open(text + "\"zeta\":1}");
    type(QStringLiteral("z"));
    EXPECT_EQ(selectedRow(), 0) << "the search goes on from the event loop";
    replace(R"({"zapato":1})");
    QCoreApplication::processEvents();
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(TreeViewKeyTests, ModifiersMakeALetterACommandThatIsPassedOn) {
    open(R"({"x":1})");
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_X, modifier, QStringLiteral("x"));
        event.ignore();
        QApplication::sendEvent(view, &event);
        EXPECT_FALSE(event.isAccepted());
        EXPECT_EQ(selectedRow(), 0);
    }
}

TEST_F(TreeViewKeyTests, KeysWithoutPrintableTextAreNotTyped) {
    open(R"({"x":1})");
    EXPECT_FALSE(isAccepted(Qt::Key_Escape));
    EXPECT_FALSE(isAccepted(Qt::Key_Backspace));
    EXPECT_FALSE(isAccepted(Qt::Key_F5));
}

// Narrow windows.

TEST_F(TreeViewKeyTests, AShallowDocumentIsNotScrolledSidewaysInANarrowWindow) {
    open(R"({"a":{"b":[1]}})");
    press(Qt::Key_Right, Qt::AltModifier);
    window->resize(view->minimumSizeHint().width(), 300);
    QCoreApplication::processEvents();
    EXPECT_EQ(view->horizontalAxis().maximum(), 0);
}

} // namespace
} // namespace quelm
