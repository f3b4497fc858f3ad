#include "Quelm/Application/FindItems.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class FindItemsTests : public testing::Test {
protected:
    void open(std::string_view text) {
        window = std::make_unique<EditorView>(documentWithText(text));
        addFindItems(*window->menuBar()->addMenu(QStringLiteral("Edición")), *window);
        window->showDocument();
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    QList<QAction*> items() const {
        QList<QAction*> items = window->menuBar()->actions().first()->menu()->actions();
        erase_if(items, [](const QAction* action) { return action->isSeparator(); });
        return items;
    }

    std::unique_ptr<EditorView> window;
};

TEST_F(FindItemsTests, AreNamedAndHaveTheirKeys) {
    open("[1");
    QStringList titles;
    QStringList keys;
    for (const QAction* item : items()) {
        titles << item->text().remove(u'&');
        keys << item->shortcut().toString();
    }
    EXPECT_EQ(titles, (QStringList{QStringLiteral("Buscar…"), QStringLiteral("Buscar siguiente"),
                                   QStringLiteral("Buscar anterior"), QStringLiteral("Reemplazar…")}));
    EXPECT_EQ(keys, (QStringList{QStringLiteral("Ctrl+F"), QStringLiteral("F3"), QStringLiteral("Shift+F3"),
                                 QStringLiteral("Ctrl+H")}));
}

TEST_F(FindItemsTests, OpenTheBarFromTheKeyboard) {
    open("[1");
    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(window->textEditor()->findBar().isVisible());
}

TEST_F(FindItemsTests, AreThereForTheTextEditorOnly) {
    open("[1]");
    for (const QAction* item : items())
        EXPECT_FALSE(item->isEnabled());
    window->document().apply(JSONContent::fromText(TextRope(SharedText("[1"))));
    for (const QAction* item : items())
        EXPECT_TRUE(item->isEnabled());
}

} // namespace
} // namespace quelm
