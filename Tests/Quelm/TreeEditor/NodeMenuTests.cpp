#include "JSONCore/JSONSerializer.h"
#include "Quelm/Foundation/Preferences.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/NodeMenu.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace quelm {
namespace {

class NodeMenuTests : public testing::Test {
protected:
    NodeMenuTests() { QGuiApplication::clipboard()->clear(); }

    void open(std::string_view text) {
        menu.reset();
        document = documentWithText(text);
        editor = std::make_unique<TreeEditor>(document);
        editor->setUndoManager(&steps);
        editor->reload();
    }

    NodeID node(std::int64_t row) const { return editor->outline().rowID(row); }
    NodeMenu& menuOf(NodeID id) {
        menu = std::make_unique<NodeMenu>(*editor, id);
        return *menu;
    }
    NodeMenu& menuOfRow(std::int64_t row) { return menuOf(node(row)); }

    static QAction* item(const QMenu& menu, const char* title) {
        const auto actions = menu.actions();
        const auto found = std::ranges::find(actions, QString::fromUtf8(title), &QAction::text);
        return found == actions.end() ? nullptr : *found;
    }
    QMenu& kinds() const { return *item(*menu, "Cambiar tipo")->menu(); }
    static void click(QMenu& menu, const char* title) {
        ASSERT_NE(item(menu, title), nullptr) << title;
        menu.popup({0, 0});
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(item(menu, title)).center());
        EXPECT_FALSE(menu.isVisible());
    }
    void choose(std::int64_t row, const char* title) { click(menuOfRow(row), title); }

    static std::vector<std::string> titles(const QMenu& menu) {
        std::vector<std::string> titles;
        for (const QAction* action : menu.actions())
            titles.push_back(action->isSeparator() ? "-" : action->text().toStdString());
        return titles;
    }
    static std::vector<std::string> disabled(const QMenu& menu) {
        std::vector<std::string> titles;
        for (const QAction* action : menu.actions())
            if (!action->isEnabled())
                titles.push_back(action->text().toStdString());
        return titles;
    }

    std::string json() const {
        const JSONTree& tree = *document->content().tree;
        const TextRope text = JSONSerializer::serializeToString(tree, std::nullopt, JSONStyle::compact());
        return std::string(text.contiguous().view());
    }
    static QString copied() { return QGuiApplication::clipboard()->text(); }

    TemporaryPreferences preferences;
    UndoManager steps;
    std::shared_ptr<JSONDocument> document;
    std::unique_ptr<TreeEditor> editor;
    std::unique_ptr<NodeMenu> menu;
};

TEST_F(NodeMenuTests, TheMenuHasItsItemsInOrder) {
    open("[1]");
    EXPECT_THAT(titles(menuOfRow(0)),
                testing::ElementsAre("Editar", "Cambiar tipo", "-", "Insertar debajo", "Insertar hijo", "Duplicar",
                                     "Mover arriba", "Mover abajo", "-", "Copiar ruta", "Copiar como JSON",
                                     "Copiar como JSON compacto", "Pegar JSON", "-", "Eliminar"));
    EXPECT_THAT(titles(kinds()), testing::ElementsAre("Objeto", "Arreglo", "Texto", "Número", "Booleano", "Nulo"));
}

TEST_F(NodeMenuTests, OnlyContainersTakeAChildAndEveryOtherItemIsEnabled) {
    open(R"([{},[],"a",1,true,null])");
    for (const std::int64_t container : {0, 1, 2})
        EXPECT_THAT(disabled(menuOfRow(container)), testing::IsEmpty()) << container;
    for (const std::int64_t scalar : {3, 4, 5, 6})
        EXPECT_THAT(disabled(menuOfRow(scalar)), testing::ElementsAre("Insertar hijo")) << scalar;
}

TEST_F(NodeMenuTests, ANodeCanBecomeOfEveryOtherKind) {
    open(R"([{},[],"a",1,true,null])");
    const std::vector<std::string> names{"Objeto", "Arreglo", "Texto", "Número", "Booleano", "Nulo"};
    for (std::size_t kind = 0; kind < names.size(); ++kind) {
        menuOfRow(static_cast<std::int64_t>(kind) + 1);
        EXPECT_THAT(disabled(kinds()), testing::ElementsAre(names[kind]));
    }
}

TEST_F(NodeMenuTests, ChoosingAKindSelectsTheNodeAndChangesIt) {
    open(R"({"a":1,"b":"2"})");
    menuOfRow(2);
    click(kinds(), "Número");
    EXPECT_EQ(json(), R"({"a":1,"b":2})");
    EXPECT_EQ(editor->selection(), node(2));
    EXPECT_EQ(steps.undoActionName(), QStringLiteral("Cambiar tipo"));
}

TEST_F(NodeMenuTests, EditingOpensTheFieldThatSuitsTheNode) {
    open(R"({"a":1,"b":[],"c":null,"d":true})");
    choose(1, "Editar");
    EXPECT_EQ(editor->selection(), node(1));
    EXPECT_EQ(editor->editing(), (TreeEditor::Editing{node(1), TreeEditor::Field::value}));
    for (const std::int64_t row : {2, 3}) {
        choose(row, "Editar");
        EXPECT_EQ(editor->editing(), (TreeEditor::Editing{node(row), TreeEditor::Field::key}));
    }
    editor->setEditing(std::nullopt);
    choose(4, "Editar");
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(json(), R"({"a":1,"b":[],"c":null,"d":false})");
}

TEST_F(NodeMenuTests, EveryChangeIsOneStepOnTheNodeOfTheMenuWhateverWasSelected) {
    const struct {
        std::int64_t row;
        const char* item;
        const char* step;
        const char* after;
    } cases[] = {
        {1, "Insertar debajo", "Insertar", R"([1,"",{"a":2},3])"},
        {2, "Insertar hijo", "Insertar", R"([1,{"a":2,"clave":""},3])"},
        {2, "Duplicar", "Duplicar", R"([1,{"a":2},{"a":2},3])"},
        {2, "Mover arriba", "Mover", R"([{"a":2},1,3])"},
        {2, "Mover abajo", "Mover", R"([1,3,{"a":2}])"},
        {2, "Eliminar", "Eliminar", "[1,3]"},
    };
    for (const auto& [row, item, step, after] : cases) {
        SCOPED_TRACE(item);
        open(R"([1,{"a":2},3])");
        steps.removeAllActions();
        choose(row, item);
        EXPECT_EQ(json(), after);
        EXPECT_EQ(steps.undoActionName(), QString::fromUtf8(step));
        steps.undo();
        EXPECT_EQ(json(), R"([1,{"a":2},3])");
        EXPECT_FALSE(steps.canUndo());
    }
}

TEST_F(NodeMenuTests, WhatDoesNotApplySelectsTheNodeAndDoesNothingElse) {
    open("[1,2]");
    for (const char* item : {"Duplicar", "Mover arriba", "Mover abajo", "Eliminar"}) {
        editor->select(node(1));
        choose(0, item);
        EXPECT_EQ(json(), "[1,2]") << item;
        EXPECT_EQ(editor->selection(), node(0)) << item;
    }
    choose(1, "Mover arriba");
    choose(2, "Mover abajo");
    EXPECT_EQ(json(), "[1,2]");

    open("1");
    QGuiApplication::clipboard()->setText(QStringLiteral("2"));
    for (const char* item : {"Insertar debajo", "Pegar JSON"})
        choose(0, item);
    EXPECT_EQ(json(), "1");
    EXPECT_FALSE(steps.canUndo());
}

TEST_F(NodeMenuTests, ThePathOfTheNodeIsCopied) {
    open(R"({"a":[1,{"b c":2}]})");
    editor->setAllExpanded(true);
    choose(4, "Copiar ruta");
    EXPECT_EQ(copied(), QStringLiteral("$.a[1][\"b c\"]"));
    EXPECT_EQ(editor->selection(), node(4));
    choose(0, "Copiar ruta");
    EXPECT_EQ(copied(), QStringLiteral("$"));
}

TEST_F(NodeMenuTests, JSONIsCopiedInThePreferredStyle) {
    open(R"({"x":{"b":[1,2],"a":"ñ"}})");
    choose(1, "Copiar como JSON");
    EXPECT_EQ(copied(), QStringLiteral("{\n  \"b\": [\n    1,\n    2\n  ],\n  \"a\": \"ñ\"\n}\n"));
    EXPECT_EQ(editor->selection(), node(1));

    Preferences::setIndent(JSONStyle::Indent::tab);
    Preferences::setSortsKeys(true);
    click(*menu, "Copiar como JSON");
    EXPECT_EQ(copied(), QStringLiteral("{\n\t\"a\": \"ñ\",\n\t\"b\": [\n\t\t1,\n\t\t2\n\t]\n}\n"));
}

TEST_F(NodeMenuTests, CompactJSONIsCopiedOnOneLineInTheOrderOfTheDocument) {
    open(R"({"x": {"b": [1, 2], "a": "ñ"}})");
    Preferences::setSortsKeys(true);
    choose(1, "Copiar como JSON compacto");
    EXPECT_EQ(copied(), QStringLiteral("{\"b\":[1,2],\"a\":\"ñ\"}"));
}

TEST_F(NodeMenuTests, AScalarIsCopiedAsItsLiteral) {
    open(R"(["a\"b",1.50,null])");
    choose(1, "Copiar como JSON");
    EXPECT_EQ(copied(), QStringLiteral("\"a\\\"b\"\n"));
    choose(1, "Copiar como JSON compacto");
    EXPECT_EQ(copied(), QStringLiteral("\"a\\\"b\""));
    choose(2, "Copiar como JSON");
    EXPECT_EQ(copied(), QStringLiteral("1.50\n"));
    choose(3, "Copiar como JSON compacto");
    EXPECT_EQ(copied(), QStringLiteral("null"));
}

TEST_F(NodeMenuTests, CopyingIsNoStepAndLeavesTheDocumentUnmodified) {
    open("[1]");
    for (const char* item : {"Copiar ruta", "Copiar como JSON", "Copiar como JSON compacto"})
        choose(1, item);
    EXPECT_FALSE(steps.canUndo());
    EXPECT_FALSE(document->isModified());
}

TEST_F(NodeMenuTests, JSONIsPastedIntoAContainerAndAfterAScalar) {
    open(R"({"a":[1]})");
    QGuiApplication::clipboard()->setText(QStringLiteral("{\"n\": true}"));
    editor->setAllExpanded(true);
    choose(1, "Pegar JSON");
    EXPECT_EQ(json(), R"({"a":[1,{"n":true}]})");
    choose(2, "Pegar JSON");
    EXPECT_EQ(json(), R"({"a":[1,{"n":true},{"n":true}]})");
    choose(0, "Pegar JSON");
    EXPECT_EQ(json(), R"({"a":[1,{"n":true},{"n":true}],"pegado":{"n":true}})");
}

TEST_F(NodeMenuTests, WithoutATreeNothingIsDoneAndNoKindIsTheCurrentOne) {
    open("[1]");
    const NodeID id = node(1);
    document->apply(JSONContent::fromText(TextRope(SharedText("[1"))));
    menuOf(id);
    EXPECT_THAT(disabled(*menu), testing::ElementsAre("Insertar hijo"));
    EXPECT_THAT(disabled(kinds()), testing::IsEmpty());
    for (const char* item : {"Editar", "Insertar debajo", "Duplicar", "Mover arriba", "Mover abajo", "Copiar ruta",
                             "Copiar como JSON", "Copiar como JSON compacto", "Pegar JSON", "Eliminar"})
        click(*menu, item);
    click(kinds(), "Objeto");
    EXPECT_EQ(document->snapshot().text->contiguous().view(), "[1");
    EXPECT_EQ(copied(), QString());
    EXPECT_FALSE(steps.canUndo());
}

TEST_F(NodeMenuTests, TheMenuClosesWhenAnotherContentComes) {
    open("[1,2]");
    menuOfRow(1).popup({0, 0});
    ASSERT_TRUE(menu->isVisible());
    document->apply(JSONContent::fromText(TextRope(SharedText("[3]"))));
    EXPECT_FALSE(menu->isVisible());
}

TEST_F(NodeMenuTests, AMenuThatIsDeletedAsItClosesStillDoesItsWork) {
    open("[1,2]");
    QPointer<NodeMenu> shown = new NodeMenu(*editor, node(1));
    shown->setAttribute(Qt::WA_DeleteOnClose);
    click(*shown, "Eliminar");
    EXPECT_EQ(json(), "[2]");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown.isNull(); }));
}

TEST_F(NodeMenuTests, KeysAreShownBesideTheItemsAndDoNothingByThemselves) {
    open("[1,2]");
    editor->select(node(1));
    QWidget window;
    NodeMenu shown(*editor, node(1), &window);
    window.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_EQ(item(shown, "Editar")->shortcut(), QKeySequence(Qt::Key_F2));
    EXPECT_EQ(item(shown, "Eliminar")->shortcut(), QKeySequence(Qt::Key_Delete));
    EXPECT_TRUE(item(shown, "Eliminar")->isShortcutVisibleInContextMenu());

    const auto pressAll = [](QWidget& target) {
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_F2})
            QTest::keyClick(&target, key);
        for (const Qt::Key key : {Qt::Key_C, Qt::Key_V})
            QTest::keyClick(&target, key, Qt::ControlModifier);
    };
    QGuiApplication::clipboard()->setText(QStringLiteral("3"));
    pressAll(window);
    shown.popup({0, 0});
    pressAll(shown);
    EXPECT_EQ(json(), "[1,2]");
    EXPECT_EQ(editor->editing(), std::nullopt);
    EXPECT_EQ(copied(), QStringLiteral("3"));
}

TEST_F(NodeMenuTests, RemovingIsMarkedInTheColourOfWarnings) {
    open("[1]");
    const QImage picture = item(menuOfRow(1), "Eliminar")->icon().pixmap(16, 16).toImage();
    const QRgb red = semanticColor(ColorRole::red).rgb();
    int painted = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, y)) == 255) {
                EXPECT_EQ(picture.pixel(x, y), red);
                ++painted;
            }
    EXPECT_GT(painted, 10);
}

} // namespace
} // namespace quelm
