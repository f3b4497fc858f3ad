#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>
#include <QTreeWidget>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The menus "Ventana" and "Ayuda", which are filled when they are shown.

namespace quelm {
namespace {

class WindowMenuTests : public testing::Test {
protected:
    EditorView* open(const QString& name) {
        controller.open(folder.write(name, "[1]"));
        EditorView* view = controller.windows().back();
        EXPECT_TRUE(QTest::qWaitFor([view] { return view->isVisible() && !view->isOpening(); }));
        return view;
    }
    static QMenu& opened(const EditorView& view, const char* title) {
        const auto actions = view.menuBar()->actions();
        const auto found = std::ranges::find(actions, QString::fromUtf8(title),
                                             [](const QAction* action) { return action->text().remove(u'&'); });
        (*found)->menu()->popup(QPoint(0, 0));
        return *(*found)->menu();
    }
    static std::vector<std::string> items(const QMenu& menu) {
        std::vector<std::string> items;
        for (const QAction* action : menu.actions()) {
            const std::string title = action->isSeparator() ? "-" : action->text().remove(u'&').toStdString();
            items.push_back(action->isChecked() ? '*' + title : title);
        }
        return items;
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
};

TEST_F(WindowMenuTests, TheWindowHasItsMenus) {
    controller.newDocument();
    std::vector<std::string> titles;
    for (const QAction* action : controller.windows().front()->menuBar()->actions())
        titles.push_back(action->text().remove(u'&').toStdString());
    EXPECT_THAT(titles, testing::ElementsAre("Archivo", "Edición", "JSON", "Ventana", "Ayuda"));
}

TEST_F(WindowMenuTests, AllWindowsAreListedAndTheOwnIsChecked) {
    EditorView* first = open(QStringLiteral("a.json"));
    EXPECT_THAT(items(opened(*first, "Ventana")), testing::ElementsAre("Minimizar", "Maximizar", "-", "*a.json"));
    EditorView* second = open(QStringLiteral("b.json"));
    controller.newDocument();
    EXPECT_THAT(items(opened(*second, "Ventana")),
                testing::ElementsAre("Minimizar", "Maximizar", "-", "a.json", "*b.json", "Sin título"));
    EXPECT_THAT(items(opened(*first, "Ventana")),
                testing::ElementsAre("Minimizar", "Maximizar", "-", "*a.json", "b.json", "Sin título"));
}

TEST_F(WindowMenuTests, ChoosingAWindowBringsItForward) {
    EditorView* first = open(QStringLiteral("a.json"));
    EditorView* second = open(QStringLiteral("b.json"));
    second->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(second));
    first->showMinimized();
    QMenu& menu = opened(*second, "Ventana");
    menu.actions().at(3)->trigger();
    menu.close();
    EXPECT_TRUE(QTest::qWaitForWindowActive(first));
    EXPECT_FALSE(first->isMinimized());
}

TEST_F(WindowMenuTests, TheWindowIsMinimizedMaximizedAndRestored) {
    EditorView* view = open(QStringLiteral("a.json"));
    view->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view));
    opened(*view, "Ventana").actions().at(1)->trigger();
    EXPECT_TRUE(view->isMaximized());
    QMenu& menu = opened(*view, "Ventana");
    EXPECT_EQ(menu.actions().at(1)->text().remove(u'&'), QStringLiteral("Restaurar"));
    menu.actions().at(1)->trigger();
    EXPECT_FALSE(view->isMaximized());
    menu.close();
    QTest::keyClick(view->focusWidget(), Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(view->isMinimized());
}

TEST_F(WindowMenuTests, TheHelpListsTheKeysOfMenusAndEditors) {
    EditorView* view = open(QStringLiteral("a.json"));
    QMenu& menu = opened(*view, "Ayuda");
    EXPECT_THAT(items(menu), testing::ElementsAre("Atajos de teclado", "Acerca de Quelm"));
    menu.actions().at(0)->trigger();
    menu.actions().at(0)->trigger();
    EXPECT_EQ(view->findChildren<QDialog*>().size(), 1) << "one list, brought forward";
    auto* list = view->findChild<QTreeWidget*>();
    ASSERT_NE(list, nullptr);
    const auto found = list->findItems(QStringLiteral("Mover arriba"), Qt::MatchExactly | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.front()->parent()->text(0), QStringLiteral("JSON"));
    EXPECT_EQ(found.front()->text(1), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_Up).toString(QKeySequence::NativeText) +
                                          QStringLiteral(", ") +
                                          QKeySequence(Qt::ALT | Qt::Key_Up).toString(QKeySequence::NativeText));
    EXPECT_EQ(list->findItems(QStringLiteral("En el texto"), Qt::MatchExactly).size(), 1);
}

TEST_F(WindowMenuTests, TheHelpSaysWhatProgramThisIs) {
    EditorView* view = open(QStringLiteral("a.json"));
    opened(*view, "Ayuda").actions().at(1)->trigger();
    auto* box = view->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), QStringLiteral("Quelm " QUELM_VERSION));
    box->close();
}

} // namespace
} // namespace quelm
