// A tree view whose editor is read-only, under a user's keys, clicks and menus, and under assistive technology.

#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeViewAccessibleNotices.h"
#include "Tests/Quelm/TreeEditor/TreeViewAccessibleTest.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>

namespace quelm {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr std::string_view someText = R"({"a":"x","b":[1,2],"c":true})";

class TreeViewReadOnlyTests : public TreeViewAccessibleTest {
protected:
    void openReadOnly(std::string_view text = someText) {
        open(text);
        editor->setReadOnly(true);
    }
    void expectUntouched() const {
        EXPECT_EQ(json(), someText);
        EXPECT_FALSE(undoManager->canUndo());
        EXPECT_EQ(view->inlineField(), nullptr);
    }
    std::vector<std::string> enabledItems() const {
        std::vector<std::string> enabled;
        for (const QAction* action : view->openMenu()->actions())
            if (!action->isSeparator() && action->isEnabled())
                enabled.push_back(action->text().toStdString());
        return enabled;
    }
};

TEST_F(TreeViewReadOnlyTests, KeysAndClicksChangeNothing) {
    openReadOnly();
    for (std::int64_t row = 0; row < 4; ++row) {
        clickRow(row);
        for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2, Qt::Key_Delete})
            press(key);
        doubleClickRow(row);
        ASSERT_NO_FATAL_FAILURE(expectUntouched());
        EXPECT_EQ(selectedRow(), row);
    }
}

TEST_F(TreeViewReadOnlyTests, TheSelectionAndTheRowsStillMove) {
    openReadOnly();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedRow(), 2);
    press(Qt::Key_Right);
    EXPECT_EQ(rowCount(), 6);
    clickChevron(2);
    EXPECT_EQ(rowCount(), 4);
    type(QStringLiteral("c"));
    EXPECT_EQ(selectedRow(), 3);
    expectUntouched();
}

TEST_F(TreeViewReadOnlyTests, TheViewLooksTheSame) {
    open(someText);
    const QImage before = painted();
    editor->setReadOnly(true);
    EXPECT_EQ(painted(), before);
}

TEST_F(TreeViewReadOnlyTests, TheNodeMenuOnlyCopies) {
    openReadOnly();
    clickRow(2);
    press(Qt::Key_Menu);
    EXPECT_THAT(enabledItems(), ElementsAre("Copiar ruta", "Copiar como JSON", "Copiar como JSON compacto"));
    choose(QStringLiteral("Copiar como JSON compacto"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("[1,2]"));
    expectUntouched();
}

TEST_F(TreeViewReadOnlyTests, AMenuThatWasOpenBeforeChangesNothing) {
    for (const char* title : {"Editar", "Insertar debajo", "Insertar hijo", "Duplicar", "Mover arriba", "Mover abajo",
                              "Pegar JSON", "Eliminar"}) {
        open(someText);
        QGuiApplication::clipboard()->setText(QStringLiteral("7"));
        clickRow(2);
        press(Qt::Key_Menu);
        QAction* item = menuItem(QString::fromUtf8(title));
        ASSERT_TRUE(item->isEnabled()) << title;
        editor->setReadOnly(true);
        EXPECT_FALSE(item->isEnabled()) << title;
        choose(QString::fromUtf8(title));
        QTest::keyClick(view->openMenu(), Qt::Key_Escape);
        expectUntouched();
    }
}

TEST_F(TreeViewReadOnlyTests, AMenuThatIsOpenIsWholeAgainAfterwards) {
    openReadOnly();
    clickRow(1);
    press(Qt::Key_Menu);
    EXPECT_FALSE(menuItem(QStringLiteral("Eliminar"))->isEnabled());
    editor->setReadOnly(false);
    EXPECT_FALSE(menuItem(QStringLiteral("Insertar hijo"))->isEnabled()) << "a string has no children";
    choose(QStringLiteral("Eliminar"));
    EXPECT_EQ(json(), R"({"b":[1,2],"c":true})");
}

TEST_F(TreeViewReadOnlyTests, TheKindsOfAnOpenNodeMenuAreDisabled) {
    open(someText);
    clickRow(1);
    press(Qt::Key_Menu);
    const QMenu* kinds = menuItem(QStringLiteral("Cambiar tipo"))->menu();
    editor->setReadOnly(true);
    EXPECT_FALSE(kinds->menuAction()->isEnabled());
    for (QAction* kind : kinds->actions()) {
        EXPECT_FALSE(kind->isEnabled());
        kind->trigger();
    }
    QTest::keyClick(view->openMenu(), Qt::Key_Escape);
    expectUntouched();
}

TEST_F(TreeViewReadOnlyTests, TheMenuOfTheBadgeOffersNothingForAsLong) {
    openReadOnly();
    clickBadge(1);
    EXPECT_EQ(selectedRow(), 1);
    EXPECT_THAT(enabledItems(), IsEmpty());
    editor->setReadOnly(false);
    EXPECT_THAT(enabledItems(), testing::SizeIs(5)) << "all kinds but its own";
    editor->setReadOnly(true);
    EXPECT_THAT(enabledItems(), IsEmpty());
    QMenu* menu = view->openMenu();
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().constFirst()).center());
    QTest::keyClick(menu, Qt::Key_Escape);
    expectUntouched();
}

TEST_F(TreeViewReadOnlyTests, AnOpenFieldGoesWithWhatWasTypedIntoIt) {
    open(someText);
    clickRow(1);
    press(Qt::Key_F2);
    type(QStringLiteral("otra"));
    QPointer<InlineField> before(&field());
    editor->setReadOnly(true);
    EXPECT_EQ(view->inlineField(), nullptr);
    EXPECT_TRUE(view->hasFocus());
    QTest::keyClick(&before->textView(), Qt::Key_Return);
    before->finish();
    expectUntouched();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !before; }));
    expectUntouched();
}

TEST_F(TreeViewReadOnlyTests, AFieldThatIsBeingComposedInGoesAsWell) {
    open(someText);
    clickRow(1);
    press(Qt::Key_F2);
    QInputMethodEvent composing(QStringLiteral("ni"), {});
    QApplication::sendEvent(&field().textView(), &composing);
    ASSERT_TRUE(field().textView().isComposing());
    QPointer<TextView> textView(&field().textView());
    editor->setReadOnly(true);
    QInputMethodEvent committing;
    committing.setCommitString(QStringLiteral("你"));
    QApplication::sendEvent(textView, &committing);
    expectUntouched();
    QCoreApplication::processEvents();
    expectUntouched();
}

// Assistive technology.

TEST_F(TreeViewReadOnlyTests, RowsTellThatTheyCannotBeEdited) {
    open(someText);
    const QString press = QAccessibleActionInterface::pressAction();
    EXPECT_TRUE(state(1).editable);
    EXPECT_FALSE(state(1).readOnly);
    EXPECT_THAT(actions(1).actionNames(), Contains(press));
    editor->setReadOnly(true);
    EXPECT_FALSE(state(1).editable);
    EXPECT_TRUE(state(1).readOnly);
    EXPECT_FALSE(state(0).readOnly) << "the top-level object has nothing to edit anyway";
    EXPECT_THAT(actions(1).actionNames(), Not(Contains(press)));
    for (int index = 0; index < 4; ++index)
        actions(index).doAction(press);
    expectUntouched();
    editor->setReadOnly(false);
    EXPECT_TRUE(state(1).editable);
    actions(3).doAction(press);
    EXPECT_EQ(json(), R"({"a":"x","b":[1,2],"c":false})");
}

TEST_F(TreeViewReadOnlyTests, KnownRowsAnnounceThatTheyCannotBeEditedAndCanAgain) {
    open(someText);
    std::vector<int> announced;
    new TreeViewAccessibleNotices(*view, {[] { return true; },
                                          [&](QAccessibleEvent& event) {
                                              ASSERT_EQ(event.type(), QAccessible::StateChanged);
                                              const auto changed =
                                                  static_cast<QAccessibleStateChangeEvent&>(event).changedStates();
                                              EXPECT_TRUE(changed.readOnly && changed.editable);
                                              EXPECT_FALSE(changed.expanded);
                                              announced.push_back(event.child());
                                          }});
    editor->setReadOnly(true);
    EXPECT_THAT(announced, IsEmpty()) << "nobody has asked for a row";
    names();
    editor->setReadOnly(false);
    EXPECT_THAT(announced, testing::UnorderedElementsAre(1, 2, 3));
    announced.clear();
    editor->setReadOnly(true);
    EXPECT_THAT(announced, testing::UnorderedElementsAre(1, 2, 3));
}

} // namespace
} // namespace quelm
