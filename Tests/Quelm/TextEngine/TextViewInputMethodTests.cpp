#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QLayout>
#include <QLineEdit>
#include <QTest>

#include <utility>

namespace quelm {
namespace {

class TextViewInputMethodTests : public TextViewWindow {
protected:
    QVariant query(Qt::InputMethodQuery what) {
        QInputMethodQueryEvent event(what);
        QApplication::sendEvent(view, &event);
        return event.value(what);
    }
    QString shown() const { return view->textLayout().composition().text; }
};

TEST_F(TextViewInputMethodTests, ACompositionIsShownAndNotInTheText) {
    open(QStringLiteral("ab|cd"));
    const QImage before = painted();
    const int caret = view->caretRectangle().left();
    compose(QStringLiteral("にほ"));
    EXPECT_EQ(text(), QStringLiteral("abcd"));
    EXPECT_EQ(shown(), QStringLiteral("にほ"));
    EXPECT_NE(painted(), before);
    EXPECT_GT(view->caretRectangle().left(), caret);
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewInputMethodTests, CommittingIsOneStep) {
    open(QStringLiteral("ab|cd"));
    compose(QStringLiteral("に"));
    compose(QStringLiteral("にほ"));
    commit(QStringLiteral("日本"));
    EXPECT_EQ(marked(), QStringLiteral("ab日本|cd"));
    EXPECT_EQ(shown(), QString());
    EXPECT_EQ(undoManager.undoActionName(), QStringLiteral("Escribir"));
    view->undo();
    EXPECT_EQ(marked(), QStringLiteral("ab|cd"));
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewInputMethodTests, WhatIsCommittedWithoutACompositionIsTyping) {
    open(QStringLiteral("|"));
    for (const QString& key : {QStringLiteral("c"), QStringLiteral("ó"), QStringLiteral("n")})
        commit(key);
    EXPECT_EQ(marked(), QStringLiteral("cón|"));
    view->undo();
    EXPECT_EQ(marked(), QStringLiteral("|"));
}

TEST_F(TextViewInputMethodTests, ACancelledCompositionLeavesNoTrace) {
    open(QStringLiteral("a^b|cd"));
    const QImage before = painted();
    compose(QStringLiteral("に"));
    compose({});
    EXPECT_EQ(marked(), QStringLiteral("a^b|cd"));
    EXPECT_EQ(painted(), before);
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewInputMethodTests, WhatIsCommittedTakesThePlaceOfTheSelectionInOneStep) {
    open(QStringLiteral("a^bc|d"));
    compose(QStringLiteral("に"));
    commit(QStringLiteral("に"));
    EXPECT_EQ(marked(), QStringLiteral("aに|d"));
    view->undo();
    EXPECT_EQ(marked(), QStringLiteral("a^bc|d"));
}

TEST_F(TextViewInputMethodTests, AnInputMethodMayReplaceTextBesideTheCaret) {
    open(QStringLiteral("abc|d"));
    commit(QStringLiteral("X"), -2, 2);
    EXPECT_EQ(marked(), QStringLiteral("aX|d"));
    commit(QStringLiteral("Y"), -100, 1000);
    EXPECT_EQ(marked(), QStringLiteral("Y|")) << "no further than the text";
}

TEST_F(TextViewInputMethodTests, LeavingOrClickingCommitsWhatWasComposed) {
    auto* other = new QLineEdit;
    window->layout()->addWidget(other);
    other->show();
    open(QStringLiteral("|abc"));
    compose(QStringLiteral("に"));
    click(place(3));
    EXPECT_EQ(text(), QStringLiteral("にabc"));
    EXPECT_EQ(shown(), QString());

    compose(QStringLiteral("ほ"));
    view->clearFocus();
    EXPECT_EQ(text().count(QStringLiteral("ほ")), 1);
    EXPECT_EQ(shown(), QString());
}

TEST_F(TextViewInputMethodTests, MovingTheCaretByOtherMeansDropsTheComposition) {
    open(QStringLiteral("abc|"));
    compose(QStringLiteral("に"));
    view->editing().setSelection(TextSelection::at(1));
    EXPECT_EQ(shown(), QString());
    EXPECT_EQ(marked(), QStringLiteral("a|bc"));
}

TEST_F(TextViewInputMethodTests, AnEditByOthersDropsTheComposition) {
    open(QStringLiteral("abc|"));
    compose(QStringLiteral("に"));
    view->textStorage().replaceCharacters({0, 3}, QStringLiteral("x"));
    EXPECT_EQ(shown(), QString());
    EXPECT_EQ(text(), QStringLiteral("x"));
    painted();
}

TEST_F(TextViewInputMethodTests, AnInputMethodMayAskAndCommitAtOnceWhenAnEditByOthersDropsItsComposition) {
    open(QStringLiteral("a long line with the caret at its end|"));
    compose(QStringLiteral("に"));
    QString surrounding;
    bool isToCommit = true;
    QObject::connect(QGuiApplication::inputMethod(), &QInputMethod::cursorRectangleChanged, view, [&] {
        surrounding = query(Qt::ImSurroundingText).toString();
        query(Qt::ImCursorRectangle);
        if (std::exchange(isToCommit, false))
            commit(QStringLiteral("日"));
    });
    view->textStorage().replaceCharacters({0, view->textStorage().length()}, QStringLiteral("[1]"));
    EXPECT_EQ(text(), QStringLiteral("[1]")) << "others are still following the edit";
    QTest::qWait(0);
    EXPECT_EQ(marked(), QStringLiteral("[1]日|"));
    EXPECT_EQ(surrounding, QStringLiteral("[1]日"));
    EXPECT_EQ(shown(), QString());
}

TEST_F(TextViewInputMethodTests, AStepThatIsUndoneElsewhereDropsTheComposition) {
    open(QStringLiteral("|"));
    type(QStringLiteral("several words"));
    compose(QStringLiteral("に"));
    QObject::connect(QGuiApplication::inputMethod(), &QInputMethod::cursorRectangleChanged, view,
                     [this] { query(Qt::ImSurroundingText); });
    undoManager.undo();
    EXPECT_EQ(marked(), QStringLiteral("|"));
    EXPECT_EQ(shown(), QString());
    QTest::qWait(0);
    undoManager.redo();
    EXPECT_EQ(marked(), QStringLiteral("several words|"));
}

TEST_F(TextViewInputMethodTests, TheInputMethodPlacesItsOwnCaret) {
    open(QStringLiteral("|"));
    QInputMethodEvent event(QStringLiteral("abcd"), {{QInputMethodEvent::Cursor, 1, 1, {}}});
    QApplication::sendEvent(view, &event);
    EXPECT_NEAR(view->caretRectangle().left(), view->textLayout().font().advance(), 2);
}

TEST_F(TextViewInputMethodTests, TheInputMethodMovesTheSelectionWithinWhatItKnows) {
    open(QStringLiteral("first\nab|cdef"));
    QInputMethodEvent event({}, {{QInputMethodEvent::Selection, 1, 3, {}}});
    QApplication::sendEvent(view, &event);
    EXPECT_EQ(marked(), QStringLiteral("first\na^bcd|ef"));
}

TEST_F(TextViewInputMethodTests, TheSurroundingTextIsTheLineWithThePlacesInIt) {
    open(QStringLiteral("first\na^bc|d\nlast"));
    EXPECT_EQ(query(Qt::ImSurroundingText).toString(), QStringLiteral("abcd"));
    EXPECT_EQ(query(Qt::ImCursorPosition).toInt(), 3);
    EXPECT_EQ(query(Qt::ImAnchorPosition).toInt(), 1);
    EXPECT_EQ(query(Qt::ImCurrentSelection).toString(), QStringLiteral("bc"));
    EXPECT_EQ(query(Qt::ImTextBeforeCursor).toString(), QStringLiteral("abc"));
    EXPECT_EQ(query(Qt::ImTextAfterCursor).toString(), QStringLiteral("d"));
}

TEST_F(TextViewInputMethodTests, OfALongLineOnlyTheNeighbourhoodSurrounds) {
    open(QString(100'000, u'x') + QStringLiteral("ab|c") + QString(100'000, u'y'));
    const QString surrounding = query(Qt::ImSurroundingText).toString();
    EXPECT_LE(surrounding.size(), 5000);
    EXPECT_EQ(surrounding.mid(query(Qt::ImCursorPosition).toInt() - 2, 3), QStringLiteral("abc"));
    view->selectAll();
    EXPECT_EQ(query(Qt::ImAnchorPosition).toInt(), 0) << "as near as it gets";
    EXPECT_LE(query(Qt::ImCurrentSelection).toString().size(), 5000);
}

TEST_F(TextViewInputMethodTests, TheCaretsPlaceIsToldInTheCoordinatesOfTheView) {
    open(QStringLiteral("ab|cd"));
    const QRect expected = view->caretRectangle().translated(view->viewport()->pos());
    EXPECT_EQ(query(Qt::ImCursorRectangle).toRect(), expected);
}

TEST_F(TextViewInputMethodTests, ReadOnlyTextHasNoInputMethod) {
    open(QStringLiteral("ab|"));
    EXPECT_TRUE(query(Qt::ImEnabled).toBool());
    view->setReadOnly(true);
    EXPECT_FALSE(query(Qt::ImEnabled).toBool());
    EXPECT_FALSE(view->testAttribute(Qt::WA_InputMethodEnabled));
    commit(QStringLiteral("x"));
    EXPECT_EQ(text(), QStringLiteral("ab"));
}

TEST_F(TextViewInputMethodTests, ACompositionInALongLineIsShownToo) {
    open(QString(50'000, u'x'));
    press(Qt::Key_End);
    const auto caret = [this] { return view->horizontalAxis().position() + view->caretRectangle().left(); };
    const std::int64_t before = caret();
    compose(QStringLiteral("に"));
    EXPECT_EQ(shown(), QStringLiteral("に"));
    EXPECT_GT(caret(), before);
    EXPECT_TRUE(isCaretVisible());
    painted();
    commit(QStringLiteral("に"));
    EXPECT_EQ(view->textStorage().length(), 50'001);
}

} // namespace
} // namespace quelm
