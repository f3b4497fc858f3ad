#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/WindowMenus.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

// Saving, closing and quitting while something is being typed into the tree, or is open over it.

namespace quelm {
namespace {

class OpenFieldTests : public testing::Test {
protected:
    void open(std::string_view text) {
        path = folder.write(QStringLiteral("notas.json"), text);
        controller.open(path);
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return !controller.windows().empty() && !controller.windows().front()->isOpening() &&
                   controller.windows().front()->isVisible();
        }));
        window = controller.windows().front();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    TreeView* tree() const { return window->treeView(); }
    /// Opens the field of a row and types into it, in place of what was there.
    void typeIntoRow(std::int64_t row, const char* text) {
        TreeEditor& editor = window->treeEditor();
        editor.select(editor.outline().rowID(row));
        editor.activate();
        ASSERT_NE(tree()->inlineField(), nullptr);
        QTest::keyClicks(&tree()->inlineField()->textView(), QString::fromUtf8(text));
    }
    QMessageBox* question() const { return window ? window->findChild<QMessageBox*>() : nullptr; }
    void answer(const char* title) {
        ASSERT_NE(question(), nullptr);
        const auto buttons = question()->buttons();
        const auto button = std::ranges::find(buttons, QString::fromUtf8(title), &QAbstractButton::text);
        ASSERT_NE(button, buttons.end());
        QTest::mouseClick(*button, Qt::LeftButton);
    }
    bool closes() {
        return QTest::qWaitFor([this] { return window == nullptr; });
    }
    bool isSavedAs(const std::string& bytes) const {
        return QTest::qWaitFor([&] { return TemporaryFolder::contents(path) == bytes; });
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QString path;
    DocumentController controller{[this](EditorView& view) { addWindowMenus(view, controller); }};
    QPointer<EditorView> window;
};

TEST_F(OpenFieldTests, SavingWritesWhatIsInTheField) {
    open("[\n  1,\n  2\n]\n");
    typeIntoRow(1, "34");
    QTest::keyClick(window->focusWidget(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(isSavedAs("[\n  34,\n  2\n]\n"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isWindowModified(); }));
    EXPECT_EQ(window->treeEditor().editing(), std::nullopt);
    EXPECT_EQ(window->undoManager().undoActionName(), QStringLiteral("Editar valor"));
}

TEST_F(OpenFieldTests, ANewDocumentIsSavedWithWhatIsInTheField) {
    controller.newDocument();
    window = controller.windows().front();
    window->document().apply(JSONContent::fromText(TextRope(SharedText(std::string_view("[\n  1,\n  2\n]\n")))));
    typeIntoRow(1, "34");
    controller.save(*window);
    auto* dialog = window->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(window->treeEditor().editing(), std::nullopt);
    path = folder.path(QStringLiteral("nuevo.json"));
    dialog->findChild<QLineEdit*>()->setText(path);
    QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return QFileInfo::exists(path); }));
    EXPECT_TRUE(isSavedAs("[\n  34,\n  2\n]\n"));
}

TEST_F(OpenFieldTests, AFieldWhoseTextIsNotValidIsNotSaved) {
    open("[1, 2]");
    typeIntoRow(1, "3x");
    QTest::keyClick(window->focusWidget(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !controller.windows().empty() && !window->isWindowModified(); }));
    EXPECT_EQ(window->treeEditor().editing(), std::nullopt);
    EXPECT_TRUE(isSavedAs("[1, 2]"));
}

TEST_F(OpenFieldTests, ClosingAsksAboutWhatIsInTheField) {
    open("[1, 2]");
    typeIntoRow(1, "34");
    EXPECT_FALSE(window->close());
    answer("Guardar");
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "[34,2]");
}

TEST_F(OpenFieldTests, WhatIsInTheFieldCanBeDiscarded) {
    open("[1, 2]");
    typeIntoRow(1, "34");
    window->close();
    answer("No guardar");
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "[1, 2]");
}

TEST_F(OpenFieldTests, AnUntouchedFieldIsNothingToAskAbout) {
    open("[1, 2]");
    typeIntoRow(1, "");
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(closes());
}

TEST_F(OpenFieldTests, QuittingAsksAboutWhatIsInTheField) {
    open("[1, 2]");
    typeIntoRow(1, "34");
    controller.quit();
    answer("Cancelar");
    EXPECT_TRUE(QTest::qWaitFor([this] { return question() == nullptr; }));
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->treeEditor().editing(), std::nullopt);
}

TEST_F(OpenFieldTests, WhatIsBeingComposedInATextIsSavedToo) {
    open("[1");
    TextView& view = window->textEditor()->textView();
    view.setSelectedRange({2, 0});
    QInputMethodEvent composition(QStringLiteral("か"), {});
    QCoreApplication::sendEvent(&view, &composition);
    ASSERT_TRUE(view.isComposing());
    controller.save(*window);
    EXPECT_TRUE(isSavedAs("[1か"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isWindowModified(); }));
}

TEST_F(OpenFieldTests, AWindowMayGoWithAFieldAMenuOrAnAlertOpen) {
    open("[1, 2]");
    typeIntoRow(1, "34");
    delete window;

    open("[1, 2]");
    tree()->showSelectionMenu();
    ASSERT_NE(tree()->openMenu(), nullptr);
    const QPointer<QMenu> menu = tree()->openMenu();
    delete window;
    EXPECT_EQ(menu, nullptr);

    open("[1, 2]");
    tree()->showSelectionMenu();
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(closes());

    open("[1, 2]");
    window->model().setErrorMessage(QStringLiteral("Algo falló.\nPor algo."));
    ASSERT_NE(question(), nullptr);
    window->close();
    EXPECT_TRUE(closes());
    EXPECT_TRUE(QTest::qWaitFor([this] { return controller.isIdle(); }));
}

TEST_F(OpenFieldTests, AWindowMayCloseWhileAStepIsUndone) {
    open("[1, 2]");
    TreeEditor& editor = window->treeEditor();
    editor.select(editor.outline().rowID(1));
    editor.remove();
    QObject::connect(&editor, &TreeEditor::didEdit, window, [this] { window->close(); });
    window->undoManager().undo();
    // In the midst of the step the state is still a changed one.
    answer("No guardar");
    EXPECT_TRUE(closes());
    EXPECT_EQ(TemporaryFolder::contents(path), "[1, 2]");
}

} // namespace
} // namespace quelm
