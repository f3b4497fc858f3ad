#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <array>

namespace quelm {
namespace {

class TextViewTypingTests : public TextViewWindow {
protected:
    /// Another place for the focus.
    QLineEdit* addField() {
        auto* field = new QLineEdit;
        window->layout()->addWidget(field);
        field->show();
        return field;
    }
};

struct Edit {
    const char16_t* before;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    const char16_t* after;
};

TEST_F(TextViewTypingTests, TypedTextTakesThePlaceOfTheSelection) {
    open(QStringLiteral("a^bc|d"));
    type(QStringLiteral("XY"));
    EXPECT_EQ(marked(), QStringLiteral("aXY|d"));
}

TEST_F(TextViewTypingTests, QuotesAndHyphensStayWhatWasTyped) {
    type(QStringLiteral("\"a\" -- 'b' ... (c)"));
    EXPECT_EQ(text(), QStringLiteral("\"a\" -- 'b' ... (c)"));
}

TEST_F(TextViewTypingTests, CharactersBeyondTheBasicPlaneAreTyped) {
    const QString smile = QStringLiteral("\U0001F600");
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, {}, smile);
    QApplication::sendEvent(view, &event);
    EXPECT_EQ(text(), smile);
}

TEST_F(TextViewTypingTests, KeysDelete) {
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    const std::array edits{
        Edit{u"ab|c", Qt::Key_Backspace, {}, u"a|c"},
        Edit{u"ab|c", Qt::Key_Backspace, Qt::ShiftModifier, u"a|c"},
        Edit{u"ab|c", Qt::Key_Delete, {}, u"ab|"},
        Edit{u"a^bc|d", Qt::Key_Backspace, {}, u"a|d"},
        Edit{u"a|bc^d", Qt::Key_Delete, {}, u"a|d"},
        Edit{u"|a", Qt::Key_Backspace, {}, u"|a"},
        Edit{u"a|", Qt::Key_Delete, {}, u"a|"},
        Edit{u"ae\u0301|", Qt::Key_Backspace, {}, u"ae|"},
        Edit{u"a|e\u0301b", Qt::Key_Delete, {}, u"a|b"},
        Edit{u"\U0001F600|", Qt::Key_Backspace, {}, u"|"},
        Edit{u"a\n|b", Qt::Key_Backspace, {}, u"a|b"},
        Edit{u"one two|", Qt::Key_Backspace, control, u"one |"},
        Edit{u"|one two", Qt::Key_Delete, control, u"|two"},
    };
    for (const Edit& edit : edits) {
        open(QString::fromUtf16(edit.before));
        press(edit.key, edit.modifiers);
        EXPECT_EQ(marked(), QString::fromUtf16(edit.after));
    }
}

TEST_F(TextViewTypingTests, DeletingALineTakesItsLineFeedAlong) {
    // Not every platform has a key for this.
    const QKeySequence keys(QKeySequence::DeleteCompleteLine);
    const QKeyCombination key = keys.isEmpty() ? QKeyCombination(Qt::Key_unknown) : keys[0];
    open(QStringLiteral("ab\nc|d\nef"));
    QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers());
    QApplication::sendEvent(view, &event);
    EXPECT_EQ(marked(), keys.isEmpty() ? QStringLiteral("ab\nc|d\nef") : QStringLiteral("ab\n|ef"));
}

TEST_F(TextViewTypingTests, DeletingToTheEndOfALineTakesTheLineFeedOnceNothingElseIsLeft) {
    open(QStringLiteral("ab|cd\r\nef"));
    press(Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("ab|\r\nef"));
    press(Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("ab|ef"));
}

TEST_F(TextViewTypingTests, DeletingToTheStartOfALineTakesTheLineFeedOnceNothingElseIsLeft) {
    open(QStringLiteral("ab\ncd|ef"));
    press(Qt::Key_Backspace, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("ab\n|ef"));
    press(Qt::Key_Backspace, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("ab|ef"));
}

TEST_F(TextViewTypingTests, ReturnKeepsTheIndentation) {
    open(QStringLiteral("  [|]"));
    press(Qt::Key_Return);
    EXPECT_EQ(marked(), QStringLiteral("  [\n  |]"));
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(marked(), QStringLiteral("  [\n  \n  |]"));
}

TEST_F(TextViewTypingTests, InsertSwitchesToOverwritingAndBack) {
    open(QStringLiteral("a|bc\nd"));
    press(Qt::Key_Insert);
    type(QStringLiteral("XYZ"));
    EXPECT_EQ(marked(), QStringLiteral("aXYZ|\nd")) << "the line feed is not overwritten";
    press(Qt::Key_Insert);
    press(Qt::Key_Home);
    type(QStringLiteral("-"));
    EXPECT_EQ(marked(), QStringLiteral("-|aXYZ\nd"));
}

TEST_F(TextViewTypingTests, OverwritingShowsABlockOverTheCharacter) {
    open(QStringLiteral("|ab"));
    const int thin = view->caretRectangle().width();
    press(Qt::Key_Insert);
    EXPECT_GT(view->caretRectangle().width(), thin);
    EXPECT_NEAR(view->caretRectangle().width(), view->textLayout().font().advance(), 1);
    press(Qt::Key_End);
    EXPECT_GT(view->caretRectangle().width(), thin) << "at the end of a line as well";
}

TEST_F(TextViewTypingTests, TabIsTyped) {
    open(QStringLiteral("a|b"));
    press(Qt::Key_Tab);
    EXPECT_EQ(marked(), QStringLiteral("a\t|b"));
}

TEST_F(TextViewTypingTests, TabLeavesAFieldOfAForm) {
    QLineEdit* other = addField();
    view->setTabChangesFocus(true);
    press(Qt::Key_Tab);
    EXPECT_EQ(text(), QString());
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(TextViewTypingTests, BacktabLeavesTheViewInAnyCase) {
    QLineEdit* other = addField();
    press(Qt::Key_Backtab);
    EXPECT_EQ(text(), QString());
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(TextViewTypingTests, TypingIsOneStepUntilTheFocusGoes) {
    QLineEdit* other = addField();
    type(QStringLiteral("ab"));
    other->setFocus();
    view->setFocus();
    type(QStringLiteral("cd"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("ab"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), QString());
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewTypingTests, UndoAndRedoAreKeys) {
    type(QStringLiteral("abc"));
    view->undo();
    EXPECT_EQ(text(), QString());
    const QKeyCombination redo = QKeySequence(QKeySequence::Redo)[0];
    press(redo.key(), redo.keyboardModifiers());
    EXPECT_EQ(marked(), QStringLiteral("abc|"));
}

TEST_F(TextViewTypingTests, UndoShowsThePlaceOfTheChange) {
    open(QStringLiteral("|x") + QString(400, u'\n'));
    type(QStringLiteral("a"));
    press(Qt::Key_End, Qt::ControlModifier);
    ASSERT_GT(view->verticalAxis().position(), 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(isCaretVisible());
    EXPECT_EQ(view->verticalAxis().position(), 0);
}

TEST_F(TextViewTypingTests, ReadOnlyTextStaysAsItIs) {
    open(QStringLiteral("a^b|c"));
    view->setReadOnly(true);
    type(QStringLiteral("x"));
    for (const auto key : {Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Delete})
        press(key);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_V, Qt::ControlModifier);
    view->deleteSelection();
    EXPECT_EQ(marked(), QStringLiteral("a^b|c"));
}

TEST_F(TextViewTypingTests, WhoeverEditsHearsOfItOnceAKey) {
    QSignalSpy changes(view, &TextView::textDidChange);
    type(QStringLiteral("ab"));
    press(Qt::Key_Backspace);
    press(Qt::Key_Left);
    EXPECT_EQ(changes.count(), 3);
}

// Shortcuts.

TEST_F(TextViewTypingTests, KeysThatEditAreClaimedBeforeShortcuts) {
    EXPECT_TRUE(claims(Qt::Key_A, {}, QStringLiteral("a")));
    EXPECT_TRUE(claims(Qt::Key_Space, {}, QStringLiteral(" ")));
    EXPECT_TRUE(claims(Qt::Key_Delete));
    EXPECT_TRUE(claims(Qt::Key_Backspace));
    EXPECT_TRUE(claims(Qt::Key_Return));
    EXPECT_TRUE(claims(Qt::Key_Home));
    EXPECT_TRUE(claims(Qt::Key_Tab, {}, QStringLiteral("\t")));
    EXPECT_TRUE(claims(Qt::Key_Z, Qt::ControlModifier));
    EXPECT_TRUE(claims(Qt::Key_Plus, Qt::ControlModifier));
}

TEST_F(TextViewTypingTests, OtherKeysAreLeftToTheWindow) {
    EXPECT_FALSE(claims(Qt::Key_Escape, {}, QStringLiteral("\x1B")));
    EXPECT_FALSE(claims(Qt::Key_F3));
    EXPECT_FALSE(claims(Qt::Key_S, Qt::ControlModifier, QStringLiteral("\x13")));
    EXPECT_FALSE(claims(Qt::Key_F, Qt::AltModifier, QStringLiteral("f")));
    view->setReadOnly(true);
    EXPECT_FALSE(claims(Qt::Key_Delete));
    EXPECT_FALSE(claims(Qt::Key_A, {}, QStringLiteral("a")));
    EXPECT_TRUE(claims(Qt::Key_C, Qt::ControlModifier)) << "copying is not editing";
}

// The caret.

TEST_F(TextViewTypingTests, TheCaretIsSeenWithTheFocusAndRestartsAtEachMove) {
    open(QStringLiteral("|ab"));
    const QRect caret = view->caretRectangle();
    const auto isInked = [this](QRect area) {
        return painted().pixelColor(area.center()) != painted().pixelColor(QPoint(400, 400));
    };
    press(Qt::Key_End);
    press(Qt::Key_Home);
    EXPECT_TRUE(isInked(QRect(caret.left(), caret.top() + 1, 1, 1)));
    view->clearFocus();
    EXPECT_FALSE(isInked(QRect(caret.left(), caret.top() + 1, 1, 1)));
    view->setReadOnly(true);
    view->setFocus();
    EXPECT_TRUE(isInked(QRect(caret.left(), caret.top() + 1, 1, 1)));
}

} // namespace
} // namespace quelm
