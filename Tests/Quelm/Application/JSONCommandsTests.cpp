#include "JSONCore/JSONSerializer.h"
#include "Quelm/Application/JSONCommands.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

class JSONCommandsTests : public testing::Test {
protected:
    void open(std::string_view text) {
        window = std::make_unique<EditorView>(documentWithText(text));
        menu = &addJSONCommands(*window);
        window->showDocument();
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    static std::string titleOf(const QAction& action) { return action.text().remove(u'&').toStdString(); }
    QAction* item(const char* title) const {
        const auto actions = menu->actions();
        const auto found = std::ranges::find(actions, title, [](const QAction* action) { return titleOf(*action); });
        return found == actions.end() ? nullptr : *found;
    }
    std::vector<std::string> enabledItems() const {
        std::vector<std::string> titles;
        for (const QAction* action : menu->actions())
            if (!action->isSeparator() && action->isEnabled())
                titles.push_back(titleOf(*action));
        return titles;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void select(std::int64_t row) { window->treeEditor().select(window->treeEditor().outline().rowID(row)); }
    std::string json() const {
        return std::string(
            JSONSerializer::serialize(*window->treeEditor().tree(), std::nullopt, JSONStyle::compact()).view());
    }

    TemporaryPreferences preferences;
    std::unique_ptr<EditorView> window;
    QMenu* menu = nullptr;
};

TEST_F(JSONCommandsTests, AreNamedOrderedAndHaveTheirKeys) {
    open("[1]");
    EXPECT_EQ(menu->title().remove(u'&'), QStringLiteral("JSON"));
    std::vector<std::string> found;
    for (const QAction* action : menu->actions()) {
        QStringList keys;
        for (const QKeySequence& key : action->shortcuts())
            keys += key.toString();
        found.push_back(action->isSeparator() ? "-"
                                              : (action->text().remove(u'&') + u'|' + keys.join(u' ')).toStdString());
    }
    EXPECT_THAT(found, testing::ElementsAre("Árbol|Ctrl+1", "Texto|Ctrl+2", "-", "Embellecer|Ctrl+Alt+B",
                                            "Compactar|Ctrl+Alt+M", "-", "Insertar debajo|Ctrl+Return Ctrl+Enter",
                                            "Insertar hijo|Ctrl+Shift+Return Ctrl+Shift+Enter", "Duplicar|Ctrl+D",
                                            "Mover arriba|Ctrl+Alt+Up Alt+Up", "Mover abajo|Ctrl+Alt+Down Alt+Down",
                                            "-", "Expandir todo|", "Colapsar todo|", "-", "Copiar ruta|Ctrl+Shift+C",
                                            "Pegar JSON|Ctrl+Shift+V", "-", "Ir a línea…|Ctrl+L", "Ir al error|"));
}

TEST_F(JSONCommandsTests, ActOnTheSelectionFromTheKeyboard) {
    open("[1,2]");
    select(1);
    press(Qt::Key_Down, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(json(), "[2,1]");
    press(Qt::Key_Up, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(json(), "[1,2]");
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(json(), "[1,1,2]");
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("$[1]"));
    QGuiApplication::clipboard()->setText(QStringLiteral("{\"a\":null}"));
    press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(json(), "[1,1,{\"a\":null},2]");
}

TEST_F(JSONCommandsTests, InsertingHandsInTheOpenFieldAndOpensTheNextOne) {
    open("{\"a\":\"x\"}");
    select(1);
    press(Qt::Key_Return, {});
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("y"));
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(json(), "{\"a\":\"y\",\"clave\":\"\"}");
    const auto editing = window->treeEditor().editing();
    ASSERT_TRUE(editing);
    EXPECT_EQ(editing->field, TreeEditor::Field::key);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("b"));
    press(Qt::Key_Return, {});
    EXPECT_EQ(json(), "{\"a\":\"y\",\"b\":\"\"}");
}

TEST_F(JSONCommandsTests, AreNotTakenByAnOpenField) {
    open("[\"abc\"]");
    select(1);
    press(Qt::Key_Return, {});
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(json(), "[\"abc\",\"abc\"]");
}

TEST_F(JSONCommandsTests, ExpandAndCollapseEverything) {
    open("[[[1]],2]");
    item("Expandir todo")->trigger();
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 5);
    item("Colapsar todo")->trigger();
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 3);
}

TEST_F(JSONCommandsTests, InATreeOfWhichNothingIsSelectedOnlyTheWholeCanBeWorkedOn) {
    open("[1]");
    window->treeEditor().setSelection(std::nullopt);
    EXPECT_THAT(enabledItems(),
                testing::ElementsAre("Árbol", "Texto", "Embellecer", "Compactar", "Expandir todo", "Colapsar todo"));
    select(1);
    EXPECT_THAT(enabledItems(), testing::ElementsAre("Árbol", "Texto", "Embellecer", "Compactar", "Insertar debajo",
                                                     "Insertar hijo", "Duplicar", "Mover arriba", "Mover abajo",
                                                     "Expandir todo", "Colapsar todo", "Copiar ruta", "Pegar JSON"));
}

TEST_F(JSONCommandsTests, ASelectionThatIsNotPartOfTheDocumentIsNone) {
    open("[1]");
    select(1);
    window->treeEditor().duplicate();
    window->undoManager().undo();
    const bool isLinked = window->treeEditor().isLinked(window->treeEditor().selection().value());
    EXPECT_EQ(item("Duplicar")->isEnabled(), isLinked);
    EXPECT_EQ(item("Copiar ruta")->isEnabled(), isLinked);
}

TEST_F(JSONCommandsTests, InATextThereAreItsOwn) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    open("[1]");
    EXPECT_THAT(enabledItems(), testing::ElementsAre("Árbol", "Texto", "Embellecer", "Compactar", "Ir a línea…"));
}

TEST_F(JSONCommandsTests, InAnInvalidTextTheErrorCanBeGoneTo) {
    open("[1,\n 2 3]");
    EXPECT_THAT(enabledItems(),
                testing::ElementsAre("Árbol", "Texto", "Embellecer", "Compactar", "Ir a línea…", "Ir al error"));
    TextView& view = window->textEditor()->textView();
    QTRY_COMPARE(view.selectedRange().location, 7);
    view.setSelectedRange({0, 0});
    item("Ir al error")->trigger();
    QTRY_COMPARE(view.selectedRange().location, 7);
}

TEST_F(JSONCommandsTests, TheErrorGoesWithTheTextThatHadIt) {
    open("[1");
    ASSERT_TRUE(item("Ir al error")->isEnabled());
    window->document().apply(JSONContent::fromText(TextRope(SharedText("[1]"))));
    EXPECT_FALSE(item("Ir al error")->isEnabled());
    EXPECT_FALSE(item("Ir a línea…")->isEnabled());
}

TEST_F(JSONCommandsTests, WhileTheDocumentIsInHandItCanOnlyBeLookedAt) {
    open("[1]");
    select(1);
    press(Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_TRUE(window->model().isBusy());
    EXPECT_THAT(enabledItems(), testing::ElementsAre("Expandir todo", "Colapsar todo", "Copiar ruta"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isBusy(); }));
    EXPECT_EQ(window->undoManager().undoActionName(), QStringLiteral("Formato"));
    EXPECT_TRUE(item("Embellecer")->isEnabled());
    EXPECT_TRUE(item("Texto")->isEnabled());
}

TEST_F(JSONCommandsTests, UnderALockItCanOnlyBeLookedAtToo) {
    open("[1]");
    select(1);
    window->setEditingLocked(true);
    EXPECT_THAT(enabledItems(), testing::ElementsAre("Expandir todo", "Colapsar todo", "Copiar ruta"));
    window->setEditingLocked(false);
    EXPECT_TRUE(item("Duplicar")->isEnabled());
}

TEST_F(JSONCommandsTests, WhileADocumentIsStillToComeThereIsNothingToDo) {
    window = std::make_unique<EditorView>(documentWithText("[1]"));
    menu = &addJSONCommands(*window);
    EXPECT_THAT(enabledItems(), testing::IsEmpty());
    window->showDocument();
    EXPECT_THAT(enabledItems(), testing::Contains("Texto"));
}

TEST_F(JSONCommandsTests, TheModesSayWhichOneThereIs) {
    open("[1]");
    EXPECT_TRUE(item("Árbol")->isChecked());
    item("Árbol")->trigger();
    EXPECT_TRUE(item("Árbol")->isChecked());
    EXPECT_FALSE(window->model().isBusy());
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(item("Árbol")->isChecked()) << "the conversion has not ended yet";
    EXPECT_FALSE(item("Texto")->isChecked());
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->document().mode() == EditorMode::text; }));
    EXPECT_TRUE(item("Texto")->isChecked());
    EXPECT_FALSE(item("Árbol")->isChecked());
    press(Qt::Key_1, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->document().mode() == EditorMode::tree; }));
    EXPECT_TRUE(item("Árbol")->isChecked());
}

TEST_F(JSONCommandsTests, AModeThatCannotBeHadIsNotChecked) {
    open("[1");
    item("Árbol")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isBusy(); }));
    EXPECT_TRUE(item("Texto")->isChecked());
    EXPECT_TRUE(window->model().errorMessage().value_or(QString()).startsWith(
        QStringLiteral("No se puede mostrar como árbol porque el JSON no es válido.\n")));
}

TEST_F(JSONCommandsTests, TheDocumentIsCompactedFromTheKeyboard) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    open("[ 1 ]");
    // With the text that a keyboard gives, or it would be typed: both modifiers together also make letters.
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_M, QStringLiteral("\r"),
                        Qt::ControlModifier | Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isBusy(); }));
    EXPECT_EQ(window->document().snapshot().text->contiguous().view(), "[1]");
}

TEST_F(JSONCommandsTests, ALineIsAskedForFromTheKeyboard) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    open("[\n1]");
    press(Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(window->model().isGoToLinePresented());
}

} // namespace
} // namespace quelm
