#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <array>

namespace quelm {
namespace {

class TextViewMovementTests : public TextViewWindow {};

struct Movement {
    const char16_t* before;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    const char16_t* after;
};

TEST_F(TextViewMovementTests, KeysMoveTheCaret) {
    const std::array movements{
        Movement{u"a|bc", Qt::Key_Right, {}, u"ab|c"},
        Movement{u"a|bc", Qt::Key_Left, {}, u"|abc"},
        Movement{u"|abc", Qt::Key_Left, {}, u"|abc"},
        Movement{u"abc|", Qt::Key_Right, {}, u"abc|"},
        Movement{u"ab|\ncd", Qt::Key_Right, {}, u"ab\n|cd"},
        Movement{u"e|\u0301\u0301x", Qt::Key_Right, {}, u"e\u0301\u0301|x"},
        Movement{u"\U0001F468\u200D\U0001F469|x", Qt::Key_Left, {}, u"|\U0001F468\u200D\U0001F469x"},
        Movement{u"a|\r\nb", Qt::Key_Right, {}, u"a\r\n|b"},
        Movement{u"|one two", Qt::Key_Right, Qt::ControlModifier, u"one |two"},
        Movement{u"one two|", Qt::Key_Left, Qt::ControlModifier, u"one |two"},
        Movement{u"ab\nc|d", Qt::Key_Home, {}, u"ab\n|cd"},
        Movement{u"  a|b", Qt::Key_Home, {}, u"|  ab"},
        Movement{u"a|b\ncd", Qt::Key_End, {}, u"ab|\ncd"},
        Movement{u"a|b\r\ncd", Qt::Key_End, {}, u"ab|\r\ncd"},
        Movement{u"ab\nc|d\ne", Qt::Key_Home, Qt::ControlModifier, u"|ab\ncd\ne"},
        Movement{u"ab\nc|d\ne", Qt::Key_End, Qt::ControlModifier, u"ab\ncd\ne|"},
        Movement{u"ab\nc|d", Qt::Key_Up, {}, u"a|b\ncd"},
        Movement{u"a|b\ncd", Qt::Key_Down, {}, u"ab\nc|d"},
        Movement{u"a|b\ncd", Qt::Key_Up, {}, u"|ab\ncd"},
        Movement{u"ab\nc|d", Qt::Key_Down, {}, u"ab\ncd|"},
        Movement{u"ab\nc|d\ne", Qt::Key_PageUp, {}, u"a|b\ncd\ne"},
        Movement{u"a|b\ncd\nef", Qt::Key_PageDown, {}, u"ab\ncd\ne|f"},
    };
    for (const Movement& movement : movements) {
        open(QString::fromUtf16(movement.before));
        press(movement.key, movement.modifiers);
        EXPECT_EQ(marked(), QString::fromUtf16(movement.after));
    }
}

TEST_F(TextViewMovementTests, KeysWithShiftExtendTheSelection) {
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    const Qt::KeyboardModifiers both = Qt::ShiftModifier | Qt::ControlModifier;
    const std::array movements{
        Movement{u"a|bc", Qt::Key_Right, shift, u"a^b|c"},
        Movement{u"a^b|c", Qt::Key_Right, shift, u"a^bc|"},
        Movement{u"a^b|c", Qt::Key_Left, shift, u"a|bc"},
        Movement{u"ab|c", Qt::Key_Left, shift, u"a|b^c"},
        Movement{u"one |two", Qt::Key_Left, both, u"|one ^two"},
        Movement{u"|one two", Qt::Key_Right, both, u"^one |two"},
        Movement{u"ab\nc|d", Qt::Key_Home, shift, u"ab\n|c^d"},
        Movement{u"a|b\ncd", Qt::Key_End, shift, u"a^b|\ncd"},
        Movement{u"ab\nc|d\ne", Qt::Key_Home, both, u"|ab\nc^d\ne"},
        Movement{u"ab\nc|d\ne", Qt::Key_End, both, u"ab\nc^d\ne|"},
        Movement{u"ab\nc|d", Qt::Key_Up, shift, u"a|b\nc^d"},
        Movement{u"a|b\ncd", Qt::Key_Down, shift, u"a^b\nc|d"},
        Movement{u"ab\nc|d", Qt::Key_Down, shift, u"ab\nc^d|"},
        Movement{u"a|b\ncd\nef", Qt::Key_PageDown, shift, u"a^b\ncd\ne|f"},
        Movement{u"ab\ncd\ne|f", Qt::Key_PageUp, shift, u"a|b\ncd\ne^f"},
        Movement{u"a|b\nc", Qt::Key_A, Qt::ControlModifier, u"^ab\nc|"},
    };
    for (const Movement& movement : movements) {
        open(QString::fromUtf16(movement.before));
        press(movement.key, movement.modifiers);
        EXPECT_EQ(marked(), QString::fromUtf16(movement.after));
    }
}

TEST_F(TextViewMovementTests, AnArrowLeavesASelectionOnItsSide) {
    open(QStringLiteral("a^bc|d"));
    press(Qt::Key_Left);
    EXPECT_EQ(marked(), QStringLiteral("a|bcd"));
    open(QStringLiteral("a|bc^d"));
    press(Qt::Key_Right);
    EXPECT_EQ(marked(), QStringLiteral("abc|d"));
}

TEST_F(TextViewMovementTests, VerticalMovesKeepTheColumnAcrossShortLines) {
    open(QStringLiteral("abcde|f\nx\nabcdefg"));
    press(Qt::Key_Down);
    EXPECT_EQ(marked(), QStringLiteral("abcdef\nx|\nabcdefg"));
    press(Qt::Key_Down);
    EXPECT_EQ(marked(), QStringLiteral("abcdef\nx\nabcde|fg"));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(marked(), QStringLiteral("abcde|f\nx\nabcdefg"));
}

TEST_F(TextViewMovementTests, AnyOtherMoveOrEditBeginsANewColumn) {
    open(QStringLiteral("abcde|f\nx\nabcdefg"));
    press(Qt::Key_Down);
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    EXPECT_EQ(marked(), QStringLiteral("abcdef\nx\n|abcdefg"));

    open(QStringLiteral("abcde|f\nx\nabcdefg"));
    press(Qt::Key_Down);
    type(QStringLiteral("y"));
    press(Qt::Key_Down);
    EXPECT_EQ(marked(), QStringLiteral("abcdef\nxy\nab|cdefg"));
}

TEST_F(TextViewMovementTests, TheColumnIsAPlaceOnTheScreen) {
    open(QStringLiteral("\t|x\nabcdefg"));
    press(Qt::Key_Down);
    EXPECT_EQ(marked(), QStringLiteral("\tx\nabcd|efg"));
}

TEST_F(TextViewMovementTests, APageGoesByAsFarAsTheViewShows) {
    QString lines;
    for (int line = 0; line < 400; ++line)
        lines += QStringLiteral("line\n");
    open(lines);
    press(Qt::Key_Down);
    const int before = view->caretRectangle().top();
    press(Qt::Key_PageDown);
    const qint64 rows = view->viewport()->height() / view->textLayout().font().rowHeight() - 1;
    EXPECT_EQ(view->textStorage().lineAt(view->editing().selection().caret), 1 + rows);
    EXPECT_EQ(view->caretRectangle().top(), before) << "the caret stays where it is in the viewport";
    press(Qt::Key_PageUp);
    EXPECT_EQ(view->textStorage().lineAt(view->editing().selection().caret), 1);
    EXPECT_EQ(view->verticalAxis().position(), 0);
}

TEST_F(TextViewMovementTests, EveryMoveBringsTheCaretIntoTheViewport) {
    QString lines;
    for (int line = 0; line < 200; ++line)
        lines += QString(line * 3, u'x') + u'\n';
    open(lines);
    for (const auto key : {Qt::Key_End, Qt::Key_Home}) {
        press(key, Qt::ControlModifier);
        EXPECT_TRUE(isCaretVisible());
    }
    view->setSelectedRange({lines.size() - 2, 0});
    EXPECT_FALSE(isCaretVisible()) << "whoever sets a selection scrolls there if they want to";
    press(Qt::Key_Left);
    EXPECT_TRUE(isCaretVisible());
    press(Qt::Key_Home);
    EXPECT_TRUE(isCaretVisible());
    EXPECT_EQ(view->horizontalAxis().position(), 0);
}

TEST_F(TextViewMovementTests, ArrowsWithControlScrollByRows) {
    QString lines(400, u'\n');
    open(lines);
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(view->verticalAxis().position(), view->textLayout().font().rowHeight());
    EXPECT_EQ(view->selectedRange(), TextRange{});
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(view->verticalAxis().position(), 0);
}

TEST_F(TextViewMovementTests, InWrappedLinesHomeAndEndStayInTheirRow) {
    open(QString(2000, u'x') + QStringLiteral("\nend"));
    view->setWrapping(TextView::Wrapping::toWidth);
    press(Qt::Key_Down);
    const qint64 secondRow = view->selectedRange().location;
    EXPECT_GT(secondRow, 0);
    press(Qt::Key_End);
    const qint64 end = view->selectedRange().location;
    EXPECT_EQ(view->textLayout().rowOf(end), 1);
    press(Qt::Key_End);
    EXPECT_EQ(view->selectedRange().location, end) << "the end of a row does not lead into the next";
    press(Qt::Key_Home);
    EXPECT_EQ(view->selectedRange().location, secondRow);
}

TEST_F(TextViewMovementTests, ReadOnlyTextIsMovedInAndSelectedToo) {
    open(QStringLiteral("a|bc"));
    view->setReadOnly(true);
    press(Qt::Key_Right);
    EXPECT_EQ(marked(), QStringLiteral("ab|c"));
    press(Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("|ab^c"));
}

} // namespace
} // namespace quelm
