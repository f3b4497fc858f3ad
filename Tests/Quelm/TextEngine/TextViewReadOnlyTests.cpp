// A text that is only read for a while, by every way in which a user could change it.

#include "Quelm/Foundation/TextMimeData.h"
#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <memory>

namespace quelm {
namespace {

class TextViewReadOnlyTests : public TextViewWindow {
protected:
    static QClipboard* clipboard() { return QGuiApplication::clipboard(); }

    void openReadOnly(const QString& marked) {
        open(marked);
        clipboard()->setText(QStringLiteral("pegado"));
        view->setReadOnly(true);
    }
    void sendDrag(QEvent::Type type, const QMimeData& data, QPoint place, Qt::DropAction action = Qt::CopyAction) {
        if (type == QEvent::DragEnter) {
            QDragEnterEvent event(place, action, &data, Qt::LeftButton, {});
            QApplication::sendEvent(view->viewport(), &event);
        } else if (type == QEvent::DragMove) {
            QDragMoveEvent event(place, action, &data, Qt::LeftButton, {});
            QApplication::sendEvent(view->viewport(), &event);
        } else {
            QDropEvent event(place, action, &data, Qt::LeftButton, {});
            QApplication::sendEvent(view->viewport(), &event);
        }
    }
    std::vector<std::string> enabledItems(const QMenu& menu) {
        std::vector<std::string> enabled;
        for (const QAction* action : menu.actions())
            if (!action->isSeparator() && action->isEnabled())
                enabled.push_back(action->text().section(u'\t', 0, 0).toStdString());
        return enabled;
    }
};

TEST_F(TextViewReadOnlyTests, NoKeyThatEditsDoesAnything) {
    openReadOnly(QStringLiteral("uno d^o|s\n  tres"));
    type(QStringLiteral("x y"));
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab, Qt::Key_Backspace, Qt::Key_Delete}) {
        press(key);
        press(key, Qt::ControlModifier);
        press(key, Qt::ShiftModifier);
    }
    for (const auto key : {Qt::Key_X, Qt::Key_V, Qt::Key_Z, Qt::Key_Y, Qt::Key_K, Qt::Key_D, Qt::Key_Insert})
        press(key, Qt::ControlModifier);
    press(Qt::Key_Insert, Qt::ShiftModifier);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(text(), QStringLiteral("uno dos\n  tres"));
    EXPECT_FALSE(undoManager.canUndo());
}

TEST_F(TextViewReadOnlyTests, StepsAreNeitherUndoneNorDoneAgain) {
    open(QStringLiteral("|"));
    type(QStringLiteral("uno"));
    press(Qt::Key_Return);
    press(Qt::Key_Z, Qt::ControlModifier);
    view->setReadOnly(true);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    view->undo();
    view->redo();
    EXPECT_EQ(undoManager.canUndo(), !text().isEmpty());
    const QString locked = text();
    view->setReadOnly(false);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_NE(text(), locked);
}

TEST_F(TextViewReadOnlyTests, TabStaysInTheText) {
    open(QStringLiteral("a|b"));
    (new QLineEdit(window.get()))->show();
    view->setReadOnly(true);
    press(Qt::Key_Tab);
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(marked(), QStringLiteral("a|b"));
    view->setTabChangesFocus(true);
    press(Qt::Key_Tab);
    EXPECT_FALSE(view->hasFocus());
}

TEST_F(TextViewReadOnlyTests, CaretSelectionAndCopyingGoOn) {
    openReadOnly(QStringLiteral("|uno dos"));
    press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(marked(), QStringLiteral("^uno |dos"));
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard()->text(), QStringLiteral("uno "));
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(marked(), QStringLiteral("^uno dos|"));
    click(place(5));
    EXPECT_EQ(marked(), QStringLiteral("uno d|os"));
    drag(place(0), place(3));
    EXPECT_EQ(marked(), QStringLiteral("^uno| dos"));
}

TEST_F(TextViewReadOnlyTests, ItLooksTheSame) {
    open(QStringLiteral("uno ^dos|"));
    const QImage before = painted();
    view->setReadOnly(true);
    EXPECT_EQ(painted(), before);
}

TEST_F(TextViewReadOnlyTests, TheMiddleButtonPastesNothing) {
    openReadOnly(QStringLiteral("uno| dos"));
    if (clipboard()->supportsSelection())
        clipboard()->setText(QStringLiteral("primario"), QClipboard::Selection);
    QTest::mouseClick(view->viewport(), Qt::MiddleButton, {}, place(1));
    EXPECT_EQ(marked(), QStringLiteral("uno| dos"));
}

// Input methods.

TEST_F(TextViewReadOnlyTests, WhatIsBeingComposedIsCommittedBefore) {
    open(QStringLiteral("a|b"));
    compose(QStringLiteral("ni"));
    QSignalSpy changes(view, &TextView::textDidChange);
    QSignalSpy locks(view, &TextView::readOnlyDidChange);
    QObject::connect(view, &TextView::textDidChange, view, [this] { EXPECT_FALSE(view->isReadOnly()); });
    view->setReadOnly(true);
    EXPECT_EQ(marked(), QStringLiteral("ani|b"));
    EXPECT_FALSE(view->isComposing());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(locks.count(), 1);
    commit(QStringLiteral("你"));
    compose(QStringLiteral("hao"));
    EXPECT_FALSE(view->isComposing());
    commit(QStringLiteral("x"), -1, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(marked(), QStringLiteral("ani|b"));
}

TEST_F(TextViewReadOnlyTests, WhatIsComposedAfterACommitThatLocksTheTextIsNotShown) {
    open(QStringLiteral("a|b"));
    QObject::connect(view, &TextView::textDidChange, view, [this] { view->setReadOnly(true); });
    QInputMethodEvent event(QStringLiteral("hao"), {});
    event.setCommitString(QStringLiteral("你"));
    QApplication::sendEvent(view, &event);
    EXPECT_EQ(marked(), QStringLiteral("a你|b"));
    EXPECT_FALSE(view->isComposing());
}

TEST_F(TextViewReadOnlyTests, HalfACharacterIsForgotten) {
    open(QStringLiteral("|"));
    const QString face = QStringLiteral("\U0001F600");
    QTest::sendKeyEvent(QTest::Click, view, Qt::Key_unknown, face.left(1), {});
    view->setReadOnly(true);
    view->setReadOnly(false);
    QTest::sendKeyEvent(QTest::Click, view, Qt::Key_unknown, face.mid(1), {});
    EXPECT_EQ(text(), QStringLiteral("\uFFFD"));
}

// Dragging.

TEST_F(TextViewReadOnlyTests, ADragOverTheTextIsNotLetInAnyMore) {
    open(QStringLiteral("uno| dos"));
    QMimeData data;
    data.setText(QStringLiteral("X"));
    const QImage before = painted();
    sendDrag(QEvent::DragEnter, data, place(2));
    sendDrag(QEvent::DragMove, data, place(2));
    EXPECT_NE(painted(), before) << "it shows where it would go";
    view->setReadOnly(true);
    EXPECT_EQ(painted(), before);
    sendDrag(QEvent::DragMove, data, place(3));
    EXPECT_EQ(painted(), before);
    sendDrag(QEvent::Drop, data, place(3));
    EXPECT_EQ(marked(), QStringLiteral("uno| dos"));
}

TEST_F(TextViewReadOnlyTests, TheSelectionIsNotMovedByADragBegunBefore) {
    open(QStringLiteral("^uno| dos"));
    TextMimeData data(view->textStorage().text(view->selectedRange()));
    data.setOwner(*view);
    sendDrag(QEvent::DragEnter, data, place(5), Qt::MoveAction);
    view->setReadOnly(true);
    sendDrag(QEvent::Drop, data, place(5), Qt::MoveAction);
    EXPECT_EQ(marked(), QStringLiteral("^uno| dos"));
}

TEST_F(TextViewReadOnlyTests, ADragOverTheEdgeDoesNotScrollOn) {
    open(QString(200, u'\n'));
    QMimeData data;
    data.setText(QStringLiteral("X"));
    const QPoint bottom(50, view->viewport()->height() - 1);
    sendDrag(QEvent::DragEnter, data, bottom);
    sendDrag(QEvent::DragMove, data, bottom);
    EXPECT_TRUE(QTest::qWaitFor([this] { return view->verticalAxis().position() > 0; }));
    view->setReadOnly(true);
    const std::int64_t position = view->verticalAxis().position();
    QTest::qWait(150);
    EXPECT_EQ(view->verticalAxis().position(), position);
}

// Menus.

TEST_F(TextViewReadOnlyTests, TheContextMenuOnlyCopiesAndSelects) {
    openReadOnly(QStringLiteral("u^n|o"));
    const std::unique_ptr<QMenu> menu(view->makeContextMenu());
    EXPECT_THAT(enabledItems(*menu), testing::ElementsAre("Copiar", "Seleccionar todo"));
}

TEST_F(TextViewReadOnlyTests, AContextMenuThatWasOpenBeforeChangesNothing) {
    open(QStringLiteral("u^n|o"));
    type(QStringLiteral("x"));
    press(Qt::Key_A, Qt::ControlModifier);
    clipboard()->setText(QStringLiteral("pegado"));
    const std::unique_ptr<QMenu> menu(view->makeContextMenu());
    EXPECT_THAT(enabledItems(*menu),
                testing::ElementsAre("Deshacer Escribir", "Cortar", "Copiar", "Pegar", "Eliminar", "Seleccionar todo"));
    view->setReadOnly(true);
    EXPECT_THAT(enabledItems(*menu), testing::ElementsAre("Copiar", "Seleccionar todo"));
    for (void (TextView::*operation)() :
         {&TextView::undo, &TextView::redo, &TextView::cut, &TextView::paste, &TextView::deleteSelection})
        (view->*operation)();
    EXPECT_EQ(text(), QStringLiteral("uxo"));
}

// Assistive technology.

TEST_F(TextViewReadOnlyTests, AnInterfaceForEditsThatWasAskedForBeforeRefusesThem) {
    open(QStringLiteral("u^n|o"));
    QAccessibleInterface* whole = QAccessible::queryAccessibleInterface(view);
    QAccessibleEditableTextInterface* editing = whole->editableTextInterface();
    ASSERT_NE(editing, nullptr);
    view->setReadOnly(true);
    EXPECT_TRUE(whole->state().readOnly);
    EXPECT_FALSE(whole->state().editable);
    editing->insertText(0, QStringLiteral("x"));
    editing->deleteText(0, 1);
    editing->replaceText(0, 1, QStringLiteral("x"));
    whole->setText(QAccessible::Value, QStringLiteral("x"));
    EXPECT_EQ(marked(), QStringLiteral("u^n|o"));
    view->setReadOnly(false);
    EXPECT_TRUE(whole->state().editable);
    editing->insertText(0, QStringLiteral("x"));
    EXPECT_EQ(text(), QStringLiteral("xuno"));
}

// Afterwards.

TEST_F(TextViewReadOnlyTests, EverythingIsBackAfterwardsAndTypingIsAStepOfItsOwn) {
    open(QStringLiteral("|"));
    type(QStringLiteral("uno"));
    view->setReadOnly(true);
    type(QStringLiteral("nada"));
    view->setReadOnly(false);
    type(QStringLiteral("dos"));
    EXPECT_EQ(text(), QStringLiteral("unodos"));
    view->undo();
    EXPECT_EQ(text(), QStringLiteral("uno"));
    view->undo();
    EXPECT_EQ(text(), QString());
    EXPECT_TRUE(view->inputMethodQuery(Qt::ImEnabled).toBool());
    compose(QStringLiteral("ni"));
    EXPECT_TRUE(view->isComposing());
}

} // namespace
} // namespace quelm
