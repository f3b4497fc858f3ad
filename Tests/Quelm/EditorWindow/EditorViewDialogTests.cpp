#include "Quelm/EditorWindow/GoToLineDialog.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace quelm {
namespace {

class EditorViewDialogTests : public EditorViewTest {
protected:
    template <class Dialog>
    Dialog* shown() const {
        for (Dialog* dialog : window->findChildren<Dialog*>())
            if (dialog->isVisible())
                return dialog;
        return nullptr;
    }
    QMessageBox* alert() const { return shown<QMessageBox>(); }
    GoToLineDialog* prompt() const { return shown<GoToLineDialog>(); }
    QFileDialog* exportDialog() const { return shown<QFileDialog>(); }

    static QPushButton* button(const QDialog& dialog, const QString& title) {
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == title)
                return button;
        return nullptr;
    }
    /// Types a line into the prompt, which must be shown, and accepts it.
    void goTo(const QString& input) {
        window->model().setGoToLinePresented(true);
        ASSERT_NE(prompt(), nullptr);
        auto* field = prompt()->findChild<QLineEdit*>();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, input);
        click(button(*prompt(), QStringLiteral("Aceptar")));
        EXPECT_EQ(prompt(), nullptr);
    }
};

// Alerts.

TEST_F(EditorViewDialogTests, TextThatIsNotJSONStaysWithAnAlertAndTheCaretAtItsError) {
    showAsText("[1]");
    QTest::keyClick(&textView(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&textView(), QStringLiteral(" x"));
    QTest::keyClick(&textView(), Qt::Key_Home, Qt::ControlModifier);
    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    ASSERT_NE(text(), nullptr);
    EXPECT_TRUE(segment(QStringLiteral("Texto"))->isChecked());
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), QStringLiteral("No se pudo completar"));
    EXPECT_TRUE(alert()->informativeText().startsWith(
        QStringLiteral("No se puede mostrar como árbol porque el JSON no es válido.\nLínea 1, columna 5: ")));
    EXPECT_EQ(textView().selectedRange(), TextRange(4, 0));

    QTest::keyClick(alert(), Qt::Key_Escape);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(window->model().errorMessage(), std::nullopt);
    QTest::keyClicks(&textView(), QStringLiteral(","));
    EXPECT_EQ(shownText(), QStringLiteral("[1] ,x"));
}

TEST_F(EditorViewDialogTests, FormattingTextThatIsNotJSONIsToldInTurn) {
    showAsText("[1,");
    for (const QString& title : {QStringLiteral("Embellecer"), QStringLiteral("Compactar")}) {
        click(EditorViewTest::button(title));
        ASSERT_TRUE(finishOperation());
        ASSERT_NE(alert(), nullptr);
        EXPECT_TRUE(alert()->informativeText().startsWith(
            QStringLiteral("No se puede dar formato a un JSON inválido.\nLínea 1, columna 4: ")));
        click(alert()->buttons().constFirst());
        EXPECT_EQ(alert(), nullptr);
    }
    EXPECT_EQ(shownText(), QStringLiteral("[1,"));
}

TEST_F(EditorViewDialogTests, ExportingTextThatIsKnownNotToBeJSONIsAnAlert) {
    showAsText("[1,");
    window->model().prepareExport(JSONStyle::compact());
    ASSERT_NE(alert(), nullptr);
    EXPECT_TRUE(alert()->informativeText().startsWith(QStringLiteral("No se puede exportar un JSON inválido.\n")));
    EXPECT_EQ(exportDialog(), nullptr);
}

TEST_F(EditorViewDialogTests, WhatFailsInTheTreeIsAnAlert) {
    show("[1]");
    QGuiApplication::clipboard()->setText(QStringLiteral("no"));
    window->treeEditor().pasteJSON();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->informativeText(),
              QStringLiteral("El portapapeles no contiene JSON válido.\nLínea 1, columna 1: Valor inesperado"));
}

TEST_F(EditorViewDialogTests, ANewMessageTakesThePlaceOfTheOneThatIsShown) {
    show("[1]");
    window->model().setErrorMessage(QStringLiteral("uno"));
    const QMessageBox* box = alert();
    window->model().setErrorMessage(QStringLiteral("dos"));
    EXPECT_EQ(alert(), box);
    EXPECT_EQ(alert()->informativeText(), QStringLiteral("dos"));
    window->model().setErrorMessage(std::nullopt);
    EXPECT_EQ(alert(), nullptr);
    window->model().setErrorMessage(QStringLiteral("tres"));
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->informativeText(), QStringLiteral("tres"));
}

TEST_F(EditorViewDialogTests, AnAlertBlocksItsWindowOnly) {
    show("[1]");
    window->model().setErrorMessage(QStringLiteral("uno"));
    EXPECT_EQ(alert()->windowModality(), Qt::WindowModal);
}

// The prompt for a line.

TEST_F(EditorViewDialogTests, ThePromptHasAFieldAndTwoButtons) {
    showAsText("[1]");
    window->model().setGoToLinePresented(true);
    ASSERT_NE(prompt(), nullptr);
    EXPECT_EQ(prompt()->windowTitle(), QStringLiteral("Ir a línea"));
    EXPECT_EQ(prompt()->findChild<QLineEdit*>()->placeholderText(), QStringLiteral("Número de línea"));
    EXPECT_NE(button(*prompt(), QStringLiteral("Aceptar")), nullptr);
    EXPECT_NE(button(*prompt(), QStringLiteral("Cancelar")), nullptr);
    EXPECT_EQ(prompt()->windowModality(), Qt::WindowModal);
}

TEST_F(EditorViewDialogTests, AcceptingMovesTheCaretToTheLine) {
    showAsText("[1,\n2,\n3]");
    goTo(QStringLiteral("2"));
    EXPECT_FALSE(window->model().isGoToLinePresented());
    EXPECT_EQ(textView().selectedRange(), TextRange(4, 0));
    EXPECT_EQ(window->model().goTo()->column, 1);
}

TEST_F(EditorViewDialogTests, WhatIsNoLineIsTheFirst) {
    showAsText("[1,\n2,\n3]");
    for (const QString& input : {QString(), QStringLiteral("abc"), QStringLiteral("0"), QStringLiteral("-5")}) {
        textView().setSelectedRange({6, 0});
        goTo(input);
        EXPECT_EQ(textView().selectedRange(), TextRange(0, 0));
    }
}

TEST_F(EditorViewDialogTests, TheSameLineTwiceMovesTheCaretTwice) {
    showAsText("[1,\n2,\n3]");
    goTo(QStringLiteral("3"));
    EXPECT_EQ(textView().selectedRange(), TextRange(7, 0));
    textView().setSelectedRange({1, 0});
    goTo(QStringLiteral("3"));
    EXPECT_EQ(textView().selectedRange(), TextRange(7, 0));
}

TEST_F(EditorViewDialogTests, CancellingMovesNothingAndKeepsWhatWasTyped) {
    showAsText("[1,\n2,\n3]");
    window->model().setGoToLinePresented(true);
    QTest::keyClicks(prompt()->findChild<QLineEdit*>(), QStringLiteral("3"));
    click(button(*prompt(), QStringLiteral("Cancelar")));
    EXPECT_EQ(prompt(), nullptr);
    EXPECT_FALSE(window->model().isGoToLinePresented());
    EXPECT_EQ(textView().selectedRange(), TextRange(0, 0));

    window->model().setGoToLinePresented(true);
    auto* field = prompt()->findChild<QLineEdit*>();
    EXPECT_EQ(field->text(), QStringLiteral("3"));
    EXPECT_EQ(field->selectedText(), QStringLiteral("3"));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(prompt(), nullptr);
    EXPECT_EQ(textView().selectedRange(), TextRange(7, 0));
}

TEST_F(EditorViewDialogTests, ThePromptGoesWhenItIsNoLongerPresented) {
    showAsText("[1]");
    window->model().setGoToLinePresented(true);
    window->model().setGoToLinePresented(false);
    EXPECT_EQ(prompt(), nullptr);
}

TEST_F(EditorViewDialogTests, TheButtonOfTheStatusBarPutsTheCaretAtTheError) {
    showAsText("[1,\n 2 3]");
    QTest::qWait(0);
    textView().setSelectedRange({0, 0});
    QPushButton* goToError = nullptr;
    for (QPushButton* candidate : window->documentStatusBar().findChildren<QPushButton*>())
        if (candidate->text() == QStringLiteral("Ir al error"))
            goToError = candidate;
    ASSERT_NE(goToError, nullptr);
    QTRY_VERIFY(goToError->isVisible());
    click(goToError);
    EXPECT_EQ(textView().selectedRange(), TextRange(7, 0));
    EXPECT_TRUE(textView().hasFocus());
}

TEST_F(EditorViewDialogTests, APlaceAskedForWhileTheTreeIsShownWaitsForTheText) {
    show("[1,\n2]");
    window->model().setGoTo(TextLocation(2, 1));
    click(segment(QStringLiteral("Texto")));
    ASSERT_TRUE(finishOperation());
    QTRY_COMPARE(textView().selectedRange(), TextRange(4, 0));
    textView().setSelectedRange({1, 0});
    click(segment(QStringLiteral("Árbol")));
    ASSERT_TRUE(finishOperation());
    click(segment(QStringLiteral("Texto")));
    ASSERT_TRUE(finishOperation());
    QTest::qWait(0);
    EXPECT_EQ(textView().selectedRange(), TextRange(0, 0));
}

// Exporting.

TEST_F(EditorViewDialogTests, AnExportAsksForAFileBesideTheDocument) {
    const TemporaryFolder folder;
    show("[1]");
    window->document().configuration().setFileLocation(folder.path(QStringLiteral("año.txt")));
    window->model().prepareExport(JSONStyle::compact());
    ASSERT_NE(exportDialog(), nullptr);
    EXPECT_EQ(exportDialog()->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(exportDialog()->defaultSuffix(), QStringLiteral("json"));
    EXPECT_EQ(exportDialog()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(exportDialog()->selectedFiles(), QStringList(folder.path(QStringLiteral("año.json"))));
}

TEST_F(EditorViewDialogTests, ADocumentWithoutAFileIsExportedAsUntitled) {
    show("[1]");
    window->model().prepareExport(JSONStyle::compact());
    ASSERT_NE(exportDialog(), nullptr);
    EXPECT_TRUE(exportDialog()->selectedFiles().constFirst().endsWith(QStringLiteral("/Sin título.json")));
}

TEST_F(EditorViewDialogTests, AcceptingWritesTheCopyAndLeavesTheDocumentAlone) {
    const TemporaryFolder folder;
    showAsText("{\"a\": [1, 2]}");
    window->document().configuration().setFileLocation(folder.path(QStringLiteral("a.json")));
    window->model().prepareExport(JSONStyle::compact());
    ASSERT_NE(exportDialog(), nullptr);
    auto* name = exportDialog()->findChild<QLineEdit*>();
    name->selectAll();
    QTest::keyClicks(name, QStringLiteral("copia"));
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(exportDialog(), nullptr);
    EXPECT_EQ(window->model().export_(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window->model().isExporting(); }));
    EXPECT_EQ(TemporaryFolder::contents(folder.path(QStringLiteral("copia.json"))), "{\"a\":[1,2]}");
    EXPECT_EQ(shownText(), QStringLiteral("{\"a\": [1, 2]}"));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(EditorViewDialogTests, DismissingTheDialogDropsTheExport) {
    show("[1]");
    window->model().prepareExport(JSONStyle::compact());
    ASSERT_NE(exportDialog(), nullptr);
    QTest::keyClick(exportDialog(), Qt::Key_Escape);
    EXPECT_EQ(exportDialog(), nullptr);
    EXPECT_EQ(window->model().export_(), nullptr);
    EXPECT_FALSE(window->model().isExporting());
}

TEST_F(EditorViewDialogTests, AWindowCanCloseWhileItAsksForSomething) {
    const std::vector<std::function<void(EditorModel&)>> questions{
        [](EditorModel& model) { model.setErrorMessage(QStringLiteral("uno")); },
        [](EditorModel& model) { model.setGoToLinePresented(true); },
        [](EditorModel& model) { model.prepareExport(JSONStyle::compact()); },
    };
    for (const auto& question : questions) {
        show("[1]");
        question(window->model());
        ASSERT_NE(shown<QDialog>(), nullptr);
        window.reset();
        QTest::qWait(0);
    }
}

} // namespace
} // namespace quelm
