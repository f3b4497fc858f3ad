#include "JSONCore/JSONSerializer.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The menu "Edición" of a window that shows a tree.

namespace quelm {
namespace {

class TreeEditMenuTests : public testing::Test {
protected:
    TreeEditMenuTests() { QGuiApplication::clipboard()->clear(); }

    void open(std::string_view text) {
        controller.newDocument();
        window = controller.windows().back();
        window->document().apply(JSONContent::fromText(TextRope(SharedText(text))));
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        ASSERT_EQ(window->focusWidget(), tree());
    }
    TreeView* tree() const { return window->treeView(); }
    TreeEditor& editor() const { return window->treeEditor(); }
    void selectRow(std::int64_t row) { editor().select(editor().outline().rowID(row)); }
    std::int64_t selectedRow() const { return editor().outline().index(editor().selection().value()).value_or(-1); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }
    QMenu& menu() const {
        for (const QAction* action : window->menuBar()->actions())
            if (action->text().remove(u'&') == QStringLiteral("Edición"))
                return *action->menu();
        qFatal("the window has no such menu");
    }
    static QString titleOf(const QAction& action) { return action.text().section(u'\t', 0, 0).remove(u'&'); }
    QAction* item(const char* title) const {
        for (QAction* action : menu().actions())
            if (titleOf(*action) == QString::fromUtf8(title))
                return action;
        return nullptr;
    }
    /// What could be chosen if the menu were opened, besides the preferences.
    std::vector<std::string> openedItems() {
        menu().popup(window->mapToGlobal(QPoint(0, 0)));
        std::vector<std::string> enabled;
        for (const QAction* action : menu().actions())
            if (!action->isSeparator() && action->isEnabled() && action->menuRole() != QAction::PreferencesRole)
                enabled.push_back(titleOf(*action).toStdString());
        QTest::keyClick(&menu(), Qt::Key_Escape);
        return enabled;
    }
    void choose(const char* title) {
        ASSERT_NE(item(title), nullptr) << title;
        menu().popup(window->mapToGlobal(QPoint(0, 0)));
        QTest::mouseClick(&menu(), Qt::LeftButton, {}, menu().actionGeometry(item(title)).center());
    }

    std::string json() const {
        const JSONTree& tree = *window->document().content().tree;
        const TextRope text = JSONSerializer::serializeToString(tree, std::nullopt, JSONStyle::compact());
        return std::string(text.contiguous().view());
    }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
    static void setClipboard(const char* text) { QGuiApplication::clipboard()->setText(QString::fromUtf8(text)); }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
    EditorView* window = nullptr;
};

TEST_F(TreeEditMenuTests, WhatIsOfferedFollowsTheSelectedNodeAndTheClipboard) {
    open("[1,2]");
    EXPECT_THAT(openedItems(), testing::ElementsAre("Copiar"));
    setClipboard("3");
    EXPECT_THAT(openedItems(), testing::ElementsAre("Copiar", "Pegar"));
    selectRow(1);
    EXPECT_THAT(openedItems(), testing::ElementsAre("Cortar", "Copiar", "Pegar", "Eliminar"));
    editor().setSelection(std::nullopt);
    EXPECT_THAT(openedItems(), testing::IsEmpty());
}

TEST_F(TreeEditMenuTests, ItemsThatKeysReachFollowTheSelectionWithoutOpeningTheMenu) {
    open("[1,2]");
    EXPECT_FALSE(item("Cortar")->isEnabled());
    EXPECT_FALSE(item("Seleccionar todo")->isEnabled());
    EXPECT_TRUE(item("Copiar")->isEnabled());
    EXPECT_TRUE(item("Pegar")->isEnabled());
    press(Qt::Key_Down, Qt::NoModifier);
    EXPECT_TRUE(item("Cortar")->isEnabled());
    EXPECT_TRUE(item("Eliminar")->isEnabled());
    window->document().apply(JSONContent::fromText(TextRope(SharedText(std::string_view("{}")))));
    EXPECT_FALSE(item("Cortar")->isEnabled());
}

TEST_F(TreeEditMenuTests, TheNodeIsCopiedAsJSONInThePreferredStyle) {
    open(R"({"a":[1,{"b":2}]})");
    Preferences::setIndent(JSONStyle::Indent::fourSpaces);
    selectRow(1);
    press(Qt::Key_C);
    EXPECT_EQ(clipboard(), QStringLiteral("[\n    1,\n    {\n        \"b\": 2\n    }\n]\n"));
    selectRow(0);
    choose("Copiar");
    EXPECT_TRUE(clipboard().startsWith(QStringLiteral("{\n    \"a\": [")));
    EXPECT_FALSE(window->isWindowModified());
}

TEST_F(TreeEditMenuTests, JSONIsPastedIntoContainersAndAfterScalars) {
    open(R"({"a":[1]})");
    editor().setAllExpanded(true);
    setClipboard(" {\"n\" : null} ");
    selectRow(0);
    press(Qt::Key_V);
    EXPECT_EQ(json(), R"({"a":[1],"pegado":{"n":null}})");
    selectRow(1);
    press(Qt::Key_V);
    EXPECT_EQ(json(), R"({"a":[1,{"n":null}],"pegado":{"n":null}})");
    selectRow(2);
    choose("Pegar");
    EXPECT_EQ(json(), R"({"a":[1,{"n":null},{"n":null}],"pegado":{"n":null}})");
    EXPECT_EQ(selectedRow(), 3);
    EXPECT_NE(item("Deshacer Pegar JSON"), nullptr);
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(TreeEditMenuTests, PastingWhatIsNotJSONIsToldWithItsPlaceAndChangesNothing) {
    open("[1]");
    setClipboard("[1,\n 2 3]");
    press(Qt::Key_V);
    auto* alert = window->findChild<QMessageBox*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(alert->isVisible());
    EXPECT_EQ(alert->text(), QStringLiteral("No se pudo completar"));
    EXPECT_EQ(alert->informativeText(),
              QStringLiteral("El portapapeles no contiene JSON válido.\nLínea 2, columna 4: Se esperaba ',' o ']'"));
    EXPECT_EQ(json(), "[1]");
    EXPECT_FALSE(window->undoManager().canUndo());
    QTest::mouseClick(alert->button(QMessageBox::Ok), Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->findChild<QMessageBox*>(); }));
    EXPECT_EQ(window->focusWidget(), tree());
}

TEST_F(TreeEditMenuTests, AnEmptyClipboardIsPastedSilently) {
    open("[1]");
    press(Qt::Key_V);
    EXPECT_EQ(json(), "[1]");
    EXPECT_EQ(window->findChild<QMessageBox*>(), nullptr);
}

TEST_F(TreeEditMenuTests, CuttingIsCopyingAndOneStepThatRemoves) {
    open("[1,[2],3]");
    selectRow(2);
    press(Qt::Key_X);
    EXPECT_EQ(json(), "[1,3]");
    EXPECT_EQ(clipboard(), QStringLiteral("[\n  2\n]\n"));
    ASSERT_NE(item("Deshacer Eliminar"), nullptr);
    press(Qt::Key_Z);
    EXPECT_EQ(json(), "[1,[2],3]");
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_FALSE(window->undoManager().canUndo());
    EXPECT_FALSE(window->isWindowModified());
}

TEST_F(TreeEditMenuTests, TheTopLevelValueIsNeitherCutNorRemoved) {
    open("[1]");
    setClipboard("x");
    press(Qt::Key_X);
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(json(), "[1]");
    EXPECT_EQ(clipboard(), QStringLiteral("x"));
}

TEST_F(TreeEditMenuTests, RemovingByMenuAndByKeyTakesOneNodeEach) {
    open("[1,2,3,4]");
    selectRow(1);
    choose("Eliminar");
    EXPECT_EQ(json(), "[2,3,4]");
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(json(), "[3,4]");
}

TEST_F(TreeEditMenuTests, TheMenuSaysWhatDeletes) {
    open("[1]");
    EXPECT_EQ(item("Eliminar")->text().section(u'\t', 1),
              QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText));
    EXPECT_TRUE(item("Eliminar")->shortcuts().isEmpty());
}

TEST_F(TreeEditMenuTests, StepsAreNamedUndoneAndDoneAgain) {
    open("[1,true]");
    selectRow(2);
    editor().activate();
    EXPECT_THAT(openedItems(), testing::Contains("Deshacer Editar valor"));
    selectRow(1);
    editor().duplicate();
    ASSERT_NE(item("Deshacer Duplicar"), nullptr);
    EXPECT_FALSE(item("Rehacer")->isEnabled());
    press(Qt::Key_Z);
    EXPECT_EQ(json(), "[1,false]");
    EXPECT_NE(item("Deshacer Editar valor"), nullptr);
    EXPECT_NE(item("Rehacer Duplicar"), nullptr);
    choose("Deshacer Editar valor");
    EXPECT_EQ(json(), "[1,true]");
    EXPECT_FALSE(item("Deshacer")->isEnabled());
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(json(), "[1,false]");
    press(Qt::Key_Y);
    EXPECT_EQ(json(), "[1,1,false]");
    EXPECT_EQ(item("Rehacer")->isEnabled(), false);
}

TEST_F(TreeEditMenuTests, UndoingAnInsertionLeavesNothingToBeCutOrCopied) {
    open("[]");
    setClipboard("1");
    press(Qt::Key_V);
    ASSERT_EQ(selectedRow(), 1);
    press(Qt::Key_Z);
    EXPECT_EQ(json(), "[]");
    EXPECT_THAT(openedItems(), testing::ElementsAre("Rehacer Pegar JSON"));
    press(Qt::Key_X);
    press(Qt::Key_V);
    EXPECT_EQ(json(), "[]");
}

TEST_F(TreeEditMenuTests, AnAppliedContentHasNoStepsOfTheOneBefore) {
    open("[1,2]");
    selectRow(2);
    editor().remove();
    ASSERT_TRUE(item("Deshacer Eliminar")->isEnabled());
    window->document().apply(JSONContent::fromText(TextRope(SharedText(std::string_view("[3]")))));
    EXPECT_FALSE(item("Deshacer")->isEnabled());
    press(Qt::Key_Z);
    EXPECT_EQ(json(), "[3]");
}

TEST_F(TreeEditMenuTests, ALockedDocumentIsOnlyCopiedFrom) {
    open("[1,[2],3]");
    selectRow(3);
    editor().remove();
    selectRow(2);
    setClipboard("4");
    window->setEditingLocked(true);
    for (const char* title : {"Deshacer", "Rehacer", "Cortar", "Pegar", "Eliminar"})
        EXPECT_FALSE(item(title)->isEnabled()) << title;
    EXPECT_TRUE(item("Copiar")->isEnabled());
    EXPECT_THAT(openedItems(), testing::ElementsAre("Copiar"));
    for (const auto key : {Qt::Key_Z, Qt::Key_Y, Qt::Key_X, Qt::Key_V})
        press(key);
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(json(), "[1,[2]]");
    EXPECT_EQ(clipboard(), QStringLiteral("4")) << "what is not cut is not copied either";
    press(Qt::Key_C);
    EXPECT_EQ(clipboard(), QStringLiteral("[\n  2\n]\n"));

    window->setEditingLocked(false);
    EXPECT_TRUE(item("Deshacer Eliminar")->isEnabled());
    for (const char* title : {"Cortar", "Copiar", "Pegar", "Eliminar"})
        EXPECT_TRUE(item(title)->isEnabled()) << title;
    press(Qt::Key_Z);
    EXPECT_EQ(json(), "[1,[2],3]");
}

TEST_F(TreeEditMenuTests, AnOpenMenuFollowsALock) {
    open("[1]");
    selectRow(1);
    menu().popup(window->mapToGlobal(QPoint(0, 0)));
    EXPECT_TRUE(item("Eliminar")->isEnabled());
    window->setEditingLocked(true);
    EXPECT_FALSE(item("Eliminar")->isEnabled());
    QTest::mouseClick(&menu(), Qt::LeftButton, {}, menu().actionGeometry(item("Eliminar")).center());
    QTest::keyClick(&menu(), Qt::Key_Escape);
    EXPECT_EQ(json(), "[1]");
}

TEST_F(TreeEditMenuTests, KeysBelongToAFieldOfTheTreeWhileItHasTheFocus) {
    open(R"(["uno","dos"])");
    selectRow(2);
    editor().remove();
    selectRow(1);
    press(Qt::Key_Return, Qt::NoModifier);
    ASSERT_NE(tree()->inlineField(), nullptr);
    TextView& field = tree()->inlineField()->textView();
    ASSERT_EQ(window->focusWidget(), &field);

    QTest::keyClicks(&field, QStringLiteral("tres"));
    EXPECT_THAT(openedItems(), testing::Contains("Deshacer Escribir"));
    press(Qt::Key_Z);
    EXPECT_EQ(tree()->inlineField()->text().view(), "uno");
    press(Qt::Key_A);
    press(Qt::Key_C);
    EXPECT_EQ(clipboard(), QStringLiteral("uno"));
    press(Qt::Key_Right, Qt::NoModifier);
    press(Qt::Key_V);
    EXPECT_EQ(tree()->inlineField()->text().view(), "unouno");
    EXPECT_EQ(json(), R"(["uno"])");

    press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ(json(), R"(["unouno"])");
    EXPECT_EQ(window->focusWidget(), tree());
    ASSERT_NE(item("Deshacer Editar valor"), nullptr);
    press(Qt::Key_Z);
    press(Qt::Key_Z);
    EXPECT_EQ(json(), R"(["uno","dos"])");
}

TEST_F(TreeEditMenuTests, AFieldThatIsCancelledLeavesTheStepsOfTheWindow) {
    open(R"(["uno","dos"])");
    selectRow(2);
    editor().remove();
    selectRow(1);
    press(Qt::Key_Return, Qt::NoModifier);
    ASSERT_NE(tree()->inlineField(), nullptr);
    QTest::keyClicks(&tree()->inlineField()->textView(), QStringLiteral("tres"));
    press(Qt::Key_Escape, Qt::NoModifier);
    EXPECT_EQ(window->focusWidget(), tree());
    EXPECT_THAT(openedItems(), testing::Contains("Deshacer Eliminar"));
    EXPECT_EQ(json(), R"(["uno"])");
}

} // namespace
} // namespace quelm
