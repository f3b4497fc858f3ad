#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/FileMenu.h"
#include "Quelm/Application/RecentFiles.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

class FileMenuTests : public testing::Test {
protected:
    EditorView* open(const QString& path) {
        controller.open(path);
        EXPECT_TRUE(QTest::qWaitFor([this] {
            return std::ranges::all_of(controller.windows(),
                                       [](const EditorView* view) { return view->isVisible() && !view->isOpening(); });
        }));
        window = controller.windows().back();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        return window;
    }
    EditorView* openText(const char* bytes) { return open(folder.write(QStringLiteral("a.json"), bytes)); }
    QMenu& menu() const { return *window->menuBar()->actions().front()->menu(); }
    QAction* item(const char* title) const {
        for (QAction* action : menu().actions())
            if (action->text().remove(u'&') == QString::fromUtf8(title))
                return action;
        return nullptr;
    }
    /// The menu of recent files as it is when it is opened, which needs the menu around it open.
    QMenu& recentMenu() {
        menu().popup(QPoint(0, 0));
        QMenu& recent = *item("Abrir recientes")->menu();
        if (recent.isEnabled())
            recent.popup(QPoint(0, 0));
        return recent;
    }
    static std::vector<std::string> titles(const QMenu& menu) {
        std::vector<std::string> titles;
        for (const QAction* action : menu.actions())
            titles.push_back(action->isSeparator() ? "-" : action->text().remove(u'&').toStdString());
        return titles;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) { QTest::keyClick(window->focusWidget(), key, modifiers); }
    void removeFirstElement() {
        window->treeEditor().select(window->treeEditor().outline().rowID(1));
        window->treeEditor().remove();
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[this](EditorView& view) { addFileMenu(view, controller); }};
    EditorView* window = nullptr;
};

TEST_F(FileMenuTests, HasItsItemsAndShortcuts) {
    openText("[1]");
    EXPECT_EQ(menu().title().remove(u'&'), QStringLiteral("Archivo"));
    std::vector<std::string> items;
    for (const QAction* action : menu().actions())
        items.push_back(action->isSeparator()
                            ? "-"
                            : (action->text().remove(u'&') + u'|' + action->shortcut().toString()).toStdString());
    EXPECT_THAT(items, testing::ElementsAre("Nuevo|Ctrl+N", "Abrir…|Ctrl+O", "Abrir recientes|", "-", "Cerrar|Ctrl+W",
                                            "Guardar|Ctrl+S", "Guardar como…|Ctrl+Shift+S", "Revertir|", "-",
                                            "Exportar JSON bonito…|Ctrl+Shift+E",
                                            "Exportar JSON compacto…|Ctrl+Alt+Shift+E", "-", "Salir|Ctrl+Q"));
}

TEST_F(FileMenuTests, OpensANewWindowAndClosesOneFromTheKeyboard) {
    openText("[1]");
    press(Qt::Key_N, Qt::ControlModifier);
    ASSERT_EQ(controller.windows().size(), 2u);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return controller.windows().size() == 1; }));
    EXPECT_FALSE(controller.windows().front()->document().configuration().fileLocation());
}

TEST_F(FileMenuTests, SavingAndExportingNeedTheDocumentToBeThere) {
    EditorView opening(std::make_shared<JSONDocument>());
    addFileMenu(opening, controller);
    window = &opening;
    for (const char* title :
         {"Guardar", "Guardar como…", "Revertir", "Exportar JSON bonito…", "Exportar JSON compacto…"})
        EXPECT_FALSE(item(title)->isEnabled()) << title;
    opening.showDocument();
    for (const char* title : {"Guardar", "Guardar como…", "Exportar JSON bonito…", "Exportar JSON compacto…"})
        EXPECT_TRUE(item(title)->isEnabled()) << title;
}

TEST_F(FileMenuTests, ExportsWaitForWhateverHasTheDocumentInHand) {
    openText("[1]");
    window->model().format(JSONStyle::compact());
    ASSERT_TRUE(window->model().isBusy());
    EXPECT_FALSE(item("Exportar JSON bonito…")->isEnabled());
    EXPECT_TRUE(item("Guardar")->isEnabled());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isBusy(); }));
    EXPECT_TRUE(item("Exportar JSON bonito…")->isEnabled());
}

TEST_F(FileMenuTests, ExportsInTheStyleOfTheItem) {
    openText("[1]");
    press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_NE(window->model().export_(), nullptr);
    EXPECT_EQ(window->model().export_()->style(), Preferences::preferredStyle());
    auto* dialog = window->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->close();
    ASSERT_EQ(window->model().export_(), nullptr);
    item("Exportar JSON compacto…")->trigger();
    ASSERT_NE(window->model().export_(), nullptr);
    EXPECT_EQ(window->model().export_()->style(), JSONStyle::compact());
}

TEST_F(FileMenuTests, RevertingIsThereForAChangedFile) {
    openText("[1]");
    EXPECT_FALSE(item("Revertir")->isEnabled());
    removeFirstElement();
    EXPECT_TRUE(item("Revertir")->isEnabled());
    window->undoManager().undo();
    EXPECT_FALSE(item("Revertir")->isEnabled());

    controller.newDocument();
    window = controller.windows().back();
    window->treeEditor().insert(true);
    ASSERT_TRUE(window->document().isModified());
    EXPECT_FALSE(item("Revertir")->isEnabled());
}

// Recent files.

TEST_F(FileMenuTests, WithoutRecentFilesTheirMenuIsDisabled) {
    controller.newDocument();
    window = controller.windows().back();
    EXPECT_FALSE(recentMenu().isEnabled());
}

TEST_F(FileMenuTests, FilesThatWereOpenedAndSavedCanBeOpenedAgain) {
    open(folder.write(QStringLiteral("a.json"), "[1]"));
    open(folder.write(QStringLiteral("b&c.json"), "[2]"));
    QMenu& recent = recentMenu();
    EXPECT_TRUE(recent.isEnabled());
    EXPECT_EQ(recent.actions().front()->text(), QStringLiteral("b&&c.json"));
    EXPECT_EQ(recent.actions().front()->toolTip(), folder.path(QStringLiteral("b&c.json")));
    EXPECT_THAT(titles(recent), testing::ElementsAre("bc.json", "a.json", "-", "Vaciar lista"));

    controller.windows().front()->close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return controller.windows().size() == 1; }));
    recent.actions().at(1)->trigger();
    ASSERT_EQ(controller.windows().size(), 2u);
    EXPECT_EQ(controller.windows().back()->windowTitle(), QStringLiteral("a.json[*]"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !controller.windows().back()->isOpening(); }));
    EXPECT_EQ(RecentFiles::paths().front(), folder.path(QStringLiteral("a.json")));
}

TEST_F(FileMenuTests, ADocumentSavedUnderANameIsARecentFile) {
    controller.newDocument();
    window = controller.windows().back();
    controller.saveAs(*window);
    auto* dialog = window->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    const QString path = folder.path(QStringLiteral("nuevo.json"));
    Q_EMIT dialog->fileSelected(path);
    dialog->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return RecentFiles::paths() == QStringList{path}; }));
}

TEST_F(FileMenuTests, TheListCanBeEmptied) {
    openText("[1]");
    QMenu& recent = recentMenu();
    ASSERT_EQ(recent.actions().back()->text().remove(u'&'), QStringLiteral("Vaciar lista"));
    recent.actions().back()->trigger();
    EXPECT_EQ(RecentFiles::paths(), QStringList());
    menu().close();
    EXPECT_FALSE(recentMenu().isEnabled());
}

TEST_F(FileMenuTests, AFileThatCannotBeOpenedLeavesTheList) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    RecentFiles::note(path);
    ASSERT_TRUE(QFile::remove(path));
    controller.open(path);
    EXPECT_TRUE(QTest::qWaitFor([] { return RecentFiles::paths().isEmpty(); }));
    for (QWidget* alert : QApplication::topLevelWidgets())
        if (alert->inherits("QMessageBox"))
            alert->close();
}

} // namespace
} // namespace quelm
