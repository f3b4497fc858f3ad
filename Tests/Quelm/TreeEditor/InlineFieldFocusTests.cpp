#include "Tests/Quelm/TreeEditor/InlineFieldWindow.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gmock/gmock.h>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InlineFieldFocusTests : public InlineFieldWindow {};

TEST_F(InlineFieldFocusTests, AClickElsewhereCommits) {
    openString("hola");
    type(QStringLiteral("x"));
    QTest::mouseClick(other, Qt::LeftButton);
    EXPECT_TRUE(other->hasFocus());
    EXPECT_THAT(calls, ElementsAre("commit x"));
}

TEST_F(InlineFieldFocusTests, AClickElsewhereCancelsATextThatIsNotValid) {
    openNumber("1");
    type(QStringLiteral("x"));
    QTest::mouseClick(other, Qt::LeftButton);
    EXPECT_THAT(calls, ElementsAre("cancel"));
}

TEST_F(InlineFieldFocusTests, OnlyReasonsThatPassKeepItOpen) {
    const std::vector<Qt::FocusReason> passing{Qt::PopupFocusReason, Qt::MenuBarFocusReason,
                                               Qt::ActiveWindowFocusReason};
    for (int reason = Qt::MouseFocusReason; reason < Qt::NoFocusReason; ++reason) {
        openString("hola");
        other->setFocus(static_cast<Qt::FocusReason>(reason));
        const bool isOpen = std::ranges::find(passing, reason) != passing.end();
        EXPECT_EQ(calls.empty(), isOpen) << reason;
    }
}

TEST_F(InlineFieldFocusTests, StaysOpenUnderItsContextMenu) {
    openString("hola");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), view().mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&view(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    EXPECT_THAT(calls, IsEmpty());
    QTest::keyClick(menu, Qt::Key_Escape);
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_TRUE(view().hasFocus());
    EXPECT_THAT(calls, IsEmpty());
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit hola"));
}

TEST_F(InlineFieldFocusTests, WhatItsContextMenuDoesIsDoneToItsText) {
    openString("hola");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), view().mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&view(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    for (QAction* action : menu->actions())
        if (action->text() == QStringLiteral("Eliminar"))
            action->trigger();
    menu->close();
    EXPECT_EQ(text(), "");
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(InlineFieldFocusTests, StaysOpenWhileTheMenuBarHasTheFocus) {
    QMenuBar bar(window.get());
    bar.addMenu(QStringLiteral("&Edición"));
    bar.show();
    openString("hola");
    bar.setFocus(Qt::MenuBarFocusReason);
    EXPECT_FALSE(view().hasFocus());
    EXPECT_THAT(calls, IsEmpty());
    view().setFocus(Qt::MenuBarFocusReason);
    EXPECT_THAT(calls, IsEmpty());
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit hola"));
}

TEST_F(InlineFieldFocusTests, CommitsWhenTheMenuBarHandsTheFocusToSomebodyElse) {
    QMenuBar bar(window.get());
    bar.addMenu(QStringLiteral("&Edición"));
    bar.show();
    openString("hola");
    bar.setFocus(Qt::MenuBarFocusReason);
    QTest::mouseClick(other, Qt::LeftButton);
    EXPECT_THAT(calls, ElementsAre("commit hola"));
}

TEST_F(InlineFieldFocusTests, StaysOpenWhileAnotherWindowIsInFront) {
    openString("hola");
    QWidget front;
    QLineEdit frontField(&front);
    front.show();
    front.activateWindow();
    frontField.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&front));
    EXPECT_THAT(calls, IsEmpty());
    front.close();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_TRUE(view().hasFocus());
    EXPECT_THAT(calls, IsEmpty());
    press(Qt::Key_Escape);
    EXPECT_THAT(calls, ElementsAre("cancel"));
}

TEST_F(InlineFieldFocusTests, MayBeDeletedByLosingTheFocus) {
    openString("hola");
    field->onCommit = [this](const SharedText&) {
        delete field;
        calls.emplace_back("deleted");
    };
    QTest::mouseClick(other, Qt::LeftButton);
    EXPECT_THAT(calls, ElementsAre("deleted"));
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(InlineFieldFocusTests, MayBeHiddenAndDeletedLaterByReturn) {
    openString("hola");
    field->onCommit = [this](const SharedText&) {
        calls.emplace_back("commit");
        field->hide();
        field->deleteLater();
    };
    press(Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("commit"));
    QCoreApplication::sendPostedEvents(field, QEvent::DeferredDelete);
    EXPECT_FALSE(field);
}

TEST_F(InlineFieldFocusTests, AClickWithinMovesTheCaret) {
    openString("hola");
    const QRect caret = view().caretRectangleAt(2);
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, caret.center());
    EXPECT_EQ(view().editing().selection(), TextSelection::at(2));
    EXPECT_THAT(calls, IsEmpty());
}

} // namespace
} // namespace quelm
