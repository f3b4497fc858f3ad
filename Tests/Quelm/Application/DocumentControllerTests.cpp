#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/FileMenu.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>

namespace quelm {
namespace {

template <typename Dialog>
Dialog* shownDialog() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<Dialog*>(widget);
        if (dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

class DocumentControllerTests : public testing::Test {
protected:
    EditorView* window(std::size_t index = 0) { return controller.windows().at(index); }
    bool waitForWindows(std::size_t count) {
        return QTest::qWaitFor([=, this] {
            return controller.windows().size() == count &&
                   std::ranges::all_of(controller.windows(), [](const EditorView* shown) {
                       return shown->isVisible() && !shown->isOpening();
                   });
        });
    }
    QMessageBox* waitForAlert() {
        return QTest::qWaitFor([] { return shownDialog<QMessageBox>() != nullptr; }) ? shownDialog<QMessageBox>()
                                                                                     : nullptr;
    }
    EditorView* openWindow(const QString& path) {
        controller.open(path);
        return waitForWindows(1) ? window() : nullptr;
    }

    /// Shortcuts belong to the active window.
    void pressShortcut(EditorView* view, Qt::Key key) {
        view->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view));
        QTest::keyClick(view, key, Qt::ControlModifier);
    }

    /// Saves the document there by the dialog, and lets a file that there is be replaced.
    void saveAs(EditorView& view, const QString& path) {
        controller.saveAs(view);
        auto* dialog = shownDialog<QFileDialog>();
        ASSERT_NE(dialog, nullptr);
        auto* field = dialog->findChild<QLineEdit*>();
        // What is selected in the list would count for more than what is typed.
        dialog->selectFile(path);
        field->setText(path);
        // The dialog asks in an event loop of its own.
        QTimer answering;
        QObject::connect(&answering, &QTimer::timeout, dialog, [dialog] {
            for (const auto* question : dialog->findChildren<QMessageBox*>())
                if (QAbstractButton* yes = question->button(QMessageBox::Yes))
                    yes->click();
        });
        answering.start();
        QTest::keyClick(field, Qt::Key_Return);
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    DocumentController controller{[this](EditorView& view) { addFileMenu(view, controller); }};
};

TEST_F(DocumentControllerTests, ANewDocumentIsAnEmptyObjectInAWindow) {
    controller.newDocument();
    ASSERT_TRUE(waitForWindows(1));
    EXPECT_EQ(window()->windowTitle(), QStringLiteral("Sin título[*]"));
    EXPECT_EQ(window()->treeEditor().outline().rowCount(), 1);
}

TEST_F(DocumentControllerTests, AFileOpensInAWindowOfItsOwn) {
    controller.open(folder.write(QStringLiteral("a.json"), "[1,2]"));
    controller.open(folder.write(QStringLiteral("b.json"), "[1"));
    ASSERT_TRUE(waitForWindows(2));
    EXPECT_EQ(window(0)->windowTitle(), QStringLiteral("a.json[*]"));
    EXPECT_EQ(window(0)->document().mode(), EditorMode::tree);
    EXPECT_EQ(window(0)->document().revision(), 1);
    EXPECT_EQ(window(1)->document().mode(), EditorMode::text);
    EXPECT_FALSE(controller.hasOnlyFailed());
}

TEST_F(DocumentControllerTests, AFileThatIsOpenIsNotOpenedAgain) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1,2]");
    ASSERT_TRUE(openWindow(path));
    controller.open(QFileInfo(path).path() + QStringLiteral("/./a.json"));
    EXPECT_EQ(controller.windows().size(), 1);
}

TEST_F(DocumentControllerTests, AFileThatCannotBeOpenedIsToldInAnAlert) {
    QSignalSpy idle(&controller, &DocumentController::becameIdle);
    controller.open(folder.write(QStringLiteral("latin1.json"), "\"a\xf1o\""));
    QMessageBox* alert = waitForAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->text(), QStringLiteral("No se pudo abrir «latin1.json»."));
    EXPECT_EQ(alert->informativeText(), QStringLiteral("Línea 1, columna 1: El archivo no está codificado en UTF-8"));
    EXPECT_EQ(alert->button(QMessageBox::Ok)->text().remove(u'&'), QStringLiteral("Aceptar"));
    EXPECT_TRUE(controller.windows().empty());
    EXPECT_TRUE(controller.hasOnlyFailed());
    EXPECT_EQ(idle.count(), 0) << "the alert has not been read yet";
    QTest::keyClick(alert, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return idle.count() == 1; }));
}

TEST_F(DocumentControllerTests, AMissingFileDoesNotKeepOthersFromOpening) {
    controller.open(folder.path(QStringLiteral("nada.json")));
    controller.open(folder.write(QStringLiteral("a.json"), "{}"));
    ASSERT_TRUE(waitForWindows(1));
    QMessageBox* alert = waitForAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->informativeText(), QStringLiteral("El archivo no existe."));
    EXPECT_FALSE(controller.hasOnlyFailed());
    alert->close();
}

TEST_F(DocumentControllerTests, ClosingTheLastWindowLeavesTheControllerIdle) {
    QSignalSpy idle(&controller, &DocumentController::becameIdle);
    EditorView* opened = openWindow(folder.write(QStringLiteral("a.json"), "[]"));
    ASSERT_NE(opened, nullptr);
    EXPECT_FALSE(controller.isIdle());
    opened->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return idle.count() == 1; }));
    EXPECT_TRUE(controller.isIdle());
}

TEST_F(DocumentControllerTests, SavingWritesTheFileBackByteForByte) {
    const std::string bytes = "\xEF\xBB\xBF{ \"b\":1,\r\n \"a\" : [ ] }";
    const QString path = folder.write(QStringLiteral("a.json"), bytes);
    EditorView* opened = openWindow(path);
    ASSERT_NE(opened, nullptr);
    ASSERT_TRUE(QFile::remove(path));
    pressShortcut(opened, Qt::Key_S);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo::exists(path); }));
    EXPECT_EQ(TemporaryFolder::contents(path), bytes);
}

TEST_F(DocumentControllerTests, ANewDocumentIsSavedWhereTheUserSays) {
    controller.newDocument();
    ASSERT_TRUE(waitForWindows(1));
    pressShortcut(window(), Qt::Key_S);
    auto* dialog = shownDialog<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->selectedFiles().front().section(u'/', -1), QStringLiteral("Sin título.json"));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Guardar como"));
    const QString path = folder.path(QStringLiteral("nuevo"));
    dialog->findChild<QLineEdit*>()->setText(path);
    QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window()->windowTitle() == QStringLiteral("nuevo.json[*]"); }));
    EXPECT_EQ(TemporaryFolder::contents(path + QStringLiteral(".json")), "{}\n");
}

TEST_F(DocumentControllerTests, ADocumentThatCouldNotBeSavedSaysWhyAndKeepsItsPlace) {
    const QString path = folder.write(QStringLiteral("a.json"), "[]");
    EditorView* opened = openWindow(path);
    ASSERT_NE(opened, nullptr);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    controller.save(*opened);
    QMessageBox* alert = waitForAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->text(), QStringLiteral("No se pudo guardar «a.json»."));
    EXPECT_EQ(alert->informativeText(), QStringLiteral("Ya hay una carpeta con ese nombre. No se ha perdido nada: tus "
                                                       "cambios siguen abiertos."));
    EXPECT_EQ(alert->parentWidget(), opened);
    EXPECT_EQ(opened->document().configuration().fileLocation(), path);
    alert->close();
}

TEST_F(DocumentControllerTests, AFileOfAnotherWindowIsNotSavedOver) {
    const QString first = folder.write(QStringLiteral("a.json"), "[1]");
    const QString second = folder.write(QStringLiteral("b.json"), "[2]");
    controller.open(first);
    controller.open(second);
    ASSERT_TRUE(waitForWindows(2));
    saveAs(*window(1), first);
    QMessageBox* alert = waitForAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->text(), QStringLiteral("No se pudo guardar «a.json»."));
    EXPECT_EQ(alert->informativeText(), QStringLiteral("El archivo está abierto en otra ventana."));
    EXPECT_EQ(alert->parentWidget(), window(1));
    alert->close();
    EXPECT_EQ(window(1)->document().configuration().fileLocation(), second);
    window(0)->close();
    ASSERT_TRUE(waitForWindows(1));
    EXPECT_EQ(TemporaryFolder::contents(first), "[1]");

    // Nobody has it open any more.
    saveAs(*window(), first);
    ASSERT_TRUE(QTest::qWaitFor([&] { return TemporaryFolder::contents(first) == "[2]"; }));
    EXPECT_EQ(shownDialog<QMessageBox>(), nullptr);
}

TEST_F(DocumentControllerTests, ADocumentCanBeSavedOverItsOwnFile) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    EditorView* opened = openWindow(path);
    ASSERT_NE(opened, nullptr);
    opened->treeEditor().insert(true);
    saveAs(*opened, path);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !opened->document().isModified(); }));
    EXPECT_EQ(shownDialog<QMessageBox>(), nullptr);
    EXPECT_NE(TemporaryFolder::contents(path), "[1]");
}

TEST_F(DocumentControllerTests, TheOpenDialogStartsInTheFolderOfTheDocument) {
    EditorView* opened = openWindow(folder.write(QStringLiteral("a.json"), "[]"));
    ASSERT_NE(opened, nullptr);
    pressShortcut(opened, Qt::Key_O);
    auto* dialog = shownDialog<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->directory().absolutePath(), QFileInfo(folder.path(QStringLiteral("a.json"))).absolutePath());
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFiles);
    dialog->close();
}

TEST_F(DocumentControllerTests, QuittingClosesEveryWindow) {
    controller.newDocument();
    controller.newDocument();
    ASSERT_TRUE(waitForWindows(2));
    pressShortcut(window(), Qt::Key_Q);
    EXPECT_TRUE(QTest::qWaitFor([&] { return controller.windows().empty(); }));
}

} // namespace
} // namespace quelm
