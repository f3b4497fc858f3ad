#include "Quelm/Application/TreeItems.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeItemsTests : public testing::Test {
protected:
    void open(std::string_view text) {
        window = std::make_unique<EditorView>(documentWithText(text));
        menu = window->menuBar()->addMenu(QStringLiteral("Edición"));
        addTreeItems(*menu, *window);
        window->showDocument();
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    void select(std::int64_t row) { window->treeEditor().select(window->treeEditor().outline().rowID(row)); }

    std::unique_ptr<EditorView> window;
    QMenu* menu = nullptr;
};

TEST_F(TreeItemsTests, RenameTheKeyOfAnyMember) {
    open(R"({"a":"valor","b":true})");
    for (const int row : {1, 2}) {
        select(row);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F2, Qt::ShiftModifier);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("clave"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        const TreeEditor& editor = window->treeEditor();
        EXPECT_EQ(editor.tree()->key(editor.outline().rowID(row)), "clave");
    }
}

TEST_F(TreeItemsTests, DoNothingToWhatHasNoKey) {
    open("[1]");
    select(1);
    menu->actions().first()->trigger();
    EXPECT_FALSE(window->treeEditor().editing());
}

TEST_F(TreeItemsTests, AreThereForMembersOnly) {
    open(R"({"a":[1]})");
    EXPECT_FALSE(menu->actions().first()->isEnabled());
    select(1);
    EXPECT_TRUE(menu->actions().first()->isEnabled());
    window->treeEditor().insert(true);
    EXPECT_FALSE(menu->actions().first()->isEnabled());
    select(1);
    window->document().apply(JSONContent::fromText(TextRope(SharedText("[1"))));
    EXPECT_FALSE(menu->actions().first()->isEnabled());
}

} // namespace
} // namespace quelm
