#include "JSONCore/JSONSerializer.h"
#include "Quelm/Application/JSONCommands.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

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
    QList<QAction*> items() const {
        QList<QAction*> items = menu->actions();
        erase_if(items, [](const QAction* action) { return action->isSeparator(); });
        return items;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void select(std::int64_t row) { window->treeEditor().select(window->treeEditor().outline().rowID(row)); }
    std::string json() const {
        return std::string(
            JSONSerializer::serialize(*window->treeEditor().tree(), std::nullopt, JSONStyle::compact()).view());
    }

    std::unique_ptr<EditorView> window;
    QMenu* menu = nullptr;
};

TEST_F(JSONCommandsTests, AreNamedAndHaveTheirKeys) {
    open("[1]");
    QStringList titles;
    QStringList keys;
    for (const QAction* item : items()) {
        titles << item->text().remove(u'&');
        keys << item->shortcut().toString();
    }
    EXPECT_EQ(
        titles,
        (QStringList{QStringLiteral("Insertar debajo"), QStringLiteral("Insertar hijo"), QStringLiteral("Duplicar"),
                     QStringLiteral("Mover arriba"), QStringLiteral("Mover abajo"), QStringLiteral("Expandir todo"),
                     QStringLiteral("Colapsar todo"), QStringLiteral("Copiar ruta"), QStringLiteral("Pegar JSON")}));
    EXPECT_EQ(keys,
              (QStringList{QStringLiteral("Ctrl+Return"), QStringLiteral("Ctrl+Shift+Return"), QStringLiteral("Ctrl+D"),
                           QStringLiteral("Ctrl+Alt+Up"), QStringLiteral("Ctrl+Alt+Down"), QString(), QString(),
                           QStringLiteral("Ctrl+Shift+C"), QStringLiteral("Ctrl+Shift+V")}));
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
    items().at(5)->trigger();
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 5);
    items().at(6)->trigger();
    EXPECT_EQ(window->treeEditor().outline().rowCount(), 3);
}

TEST_F(JSONCommandsTests, AreThereForTheTreeOnly) {
    open("[1]");
    for (const QAction* item : items())
        EXPECT_TRUE(item->isEnabled()) << item->text().toStdString();
    window->document().apply(JSONContent::fromText(TextRope(SharedText("[1"))));
    for (const QAction* item : items())
        EXPECT_FALSE(item->isEnabled()) << item->text().toStdString();
}

} // namespace
} // namespace quelm
