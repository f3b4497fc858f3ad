#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/EditorWindow/MessageBar.h"
#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/EditorWindow/TextPage.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLabel>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

class EditorViewTests : public testing::Test {
protected:
    EditorView& show(std::string_view text) {
        window = std::make_unique<EditorView>(documentWithText(text));
        window->showDocument();
        window->show();
        return *window;
    }
    void replace(std::string_view text) { window->document().apply(JSONContent::fromText(TextRope(SharedText(text)))); }
    TreeView* tree() const { return qobject_cast<TreeView*>(window->centralWidget()); }
    TextPage* text() const { return qobject_cast<TextPage*>(window->centralWidget()); }
    TextView& textView() const { return window->textEditor()->textView(); }
    QString shownText() const { return textView().textStorage().string({0, textView().textStorage().length()}); }

    TemporaryPreferences preferences;
    std::unique_ptr<EditorView> window;
};

TEST_F(EditorViewTests, AValidDocumentIsShownAsATree) {
    show("{\"a\":1}");
    ASSERT_NE(tree(), nullptr);
    EXPECT_EQ(tree()->editor().outline().rowCount(), 2);
    EXPECT_EQ(window->focusWidget(), tree());
}

TEST_F(EditorViewTests, AnInvalidDocumentIsShownAsTextWithThePlaceOfItsError) {
    show("{\"a\":1,\n\n  \"b\": [1, 2 3]}");
    ASSERT_NE(text(), nullptr);
    ASSERT_NE(text()->errorBar(), nullptr);
    EXPECT_EQ(text()->errorBar()->text(), QStringLiteral("Línea 3, columna 14: Se esperaba ',' o ']'"));
    EXPECT_TRUE(text()->errorBar()->isVisible());
    EXPECT_EQ(textView().textStorage().lineCount(), 3);
}

TEST_F(EditorViewTests, TheCaretOfAnInvalidDocumentIsAtItsError) {
    show("{\"a\":1,\n\n  \"b\": [1, 2 3]}");
    QTRY_COMPARE(textView().selectedRange().location, 9 + 13);
    EXPECT_TRUE(textView().isShowingFindIndicator());
}

TEST_F(EditorViewTests, TheErrorOfTheTextIsShownUntilItChanges) {
    show("[1");
    QTest::keyClicks(&textView(), QStringLiteral("]"));
    EXPECT_FALSE(text()->errorBar()->isVisible());
}

TEST_F(EditorViewTests, AnEmptyFileIsShownAsTextWithItsError) {
    show("");
    ASSERT_NE(text(), nullptr);
    EXPECT_EQ(text()->errorBar()->text(), QStringLiteral("Línea 1, columna 1: Se esperaba un valor"));
}

TEST_F(EditorViewTests, AValidDocumentIsShownAsTextWhenThatIsPreferred) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    show("{ \"a\" :1}");
    ASSERT_NE(text(), nullptr);
    EXPECT_EQ(text()->errorBar(), nullptr);
    EXPECT_EQ(shownText(), QStringLiteral("{ \"a\" :1}"));
}

TEST_F(EditorViewTests, TypingIsAStepOfTheWindowThatMarksItModified) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    show("[1]");
    QTest::keyClicks(&textView(), QStringLiteral("  "));
    EXPECT_EQ(shownText(), QStringLiteral("  [1]"));
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->undoManager().undoActionName(), QStringLiteral("Escribir"));
    EXPECT_EQ(window->document().snapshot().text->contiguous().view(), "  [1]");

    window->undoManager().undo();
    EXPECT_EQ(shownText(), QStringLiteral("[1]"));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(window->document().snapshot().text->contiguous().view(), "[1]");
}

TEST_F(EditorViewTests, AReplacedContentIsShownByTheSameTextViewAndUndoneInTurn) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    show("[1,2]\n");
    const TextView* before = &textView();
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    window->document().replaceContent(JSONContent::fromText(TextRope(SharedText("[\n  1,\n  2\n]\n"))),
                                      &window->undoManager());
    EXPECT_EQ(&textView(), before);
    EXPECT_EQ(shownText(), QStringLiteral("[\n  1,\n  2\n]\n"));
    EXPECT_EQ(window->undoManager().undoActionName(), QStringLiteral("Formato"));
    window->undoManager().undo();
    EXPECT_EQ(shownText(), QStringLiteral(" [1,2]\n"));
    window->undoManager().undo();
    EXPECT_EQ(shownText(), QStringLiteral("[1,2]\n"));
    window->undoManager().redo();
    window->undoManager().redo();
    EXPECT_EQ(shownText(), QStringLiteral("[\n  1,\n  2\n]\n"));
}

TEST_F(EditorViewTests, AnAppliedContentDropsTheSteps) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    show("[1]");
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    replace("[2]");
    EXPECT_FALSE(window->undoManager().canUndo());
    EXPECT_EQ(shownText(), QStringLiteral("[2]"));
    EXPECT_FALSE(window->isWindowModified());
}

TEST_F(EditorViewTests, ACompositionDoesNotReachAnAppliedContent) {
    for (const std::string_view applied : {"[2,", "[2]"}) {
        show("[1,");
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        textView().setFocus();
        QInputMethodEvent composition(QStringLiteral("XYZ"), {});
        QCoreApplication::sendEvent(&textView(), &composition);
        ASSERT_TRUE(textView().isComposing());
        replace(applied);
        QTest::qWait(0);
        EXPECT_FALSE(window->isWindowModified());
        EXPECT_FALSE(window->document().isTextBufferEdited());
        EXPECT_FALSE(window->undoManager().canUndo());
        EXPECT_EQ(window->document().snapshot().text->contiguous().view(), applied);
    }
}

TEST_F(EditorViewTests, AReplacedContentIsShownAtTheSamePlaceAndSoIsItsUndo) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    std::string lines = "[\n";
    for (int line = 0; line < 200; ++line)
        lines += '"' + std::string(3000, 'x') + "\",\n";
    lines += "1]";
    show(lines);
    TextView& view = textView();
    view.setSelectedRange({view.textStorage().lineStart(150) + 2000, 0});
    view.scrollRangeToVisible(view.selectedRange());
    const QRect caret = view.caretRectangle();
    ASSERT_GT(view.horizontalAxis().position(), 0);

    window->document().replaceContent(JSONContent::fromText(TextRope(SharedText(std::string_view(lines + "\n")))),
                                      &window->undoManager());
    QTest::qWait(0);
    EXPECT_EQ(view.caretRectangle(), caret);
    EXPECT_EQ(view.textStorage().lineAt(view.selectedRange().location), 150);
    window->undoManager().undo();
    QTest::qWait(0);
    EXPECT_EQ(view.caretRectangle(), caret);
}

TEST_F(EditorViewTests, TheEditorFollowsTheDocument) {
    show("[1]");
    replace("[1,");
    ASSERT_NE(text(), nullptr);
    replace("[1,]");
    EXPECT_EQ(text()->errorBar()->text(), QStringLiteral("Línea 1, columna 4: Valor inesperado"));
    replace("[1,2]");
    ASSERT_NE(tree(), nullptr);
    EXPECT_EQ(tree()->editor().outline().rowCount(), 3);
}

TEST_F(EditorViewTests, AnEditOfTheTreeIsAStepOfTheWindowThatMarksItModified) {
    show("[1,2]");
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    window->treeEditor().remove();
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->undoManager().undoActionName(), QStringLiteral("Eliminar"));
    window->undoManager().undo();
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(tree()->editor().outline().rowCount(), 3);

    replace("[3]");
    EXPECT_FALSE(window->undoManager().canRedo());
}

TEST_F(EditorViewTests, WhatFailsInTheTreeIsToldWithItsDetails) {
    show("[1]");
    const QSignalSpy failed(window.get(), &EditorView::failed);
    QGuiApplication::clipboard()->setText(QStringLiteral("no"));
    window->treeEditor().pasteJSON();
    ASSERT_EQ(failed.count(), 1);
    EXPECT_EQ(failed.constFirst().constFirst().toString(),
              QStringLiteral("El portapapeles no contiene JSON válido.\nLínea 1, columna 1: Valor inesperado"));
}

TEST_F(EditorViewTests, FinishingTakesTheFieldOfTheTreeAndTheCompositionOfTheText) {
    show("[1]");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    window->treeEditor().activate();
    ASSERT_NE(tree()->inlineField(), nullptr);
    QTest::keyClicks(&tree()->inlineField()->textView(), QStringLiteral("23"));
    EXPECT_FALSE(window->isWindowModified());
    window->finishEditing();
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(JSONDocument::fileContents(window->document().snapshot()).view(), "[23]");

    show("[1");
    QInputMethodEvent composition(QStringLiteral("か"), {});
    QCoreApplication::sendEvent(&textView(), &composition);
    ASSERT_TRUE(textView().isComposing());
    window->finishEditing();
    EXPECT_FALSE(textView().isComposing());
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(EditorViewTests, ADocumentThatIsStillToComeIsAnnounced) {
    EditorView window(std::make_shared<JSONDocument>());
    window.show();
    EXPECT_TRUE(window.isOpening());
    ASSERT_NE(qobject_cast<OpeningPage*>(window.centralWidget()), nullptr);
    EXPECT_EQ(window.centralWidget()->findChild<QLabel*>()->text(), QStringLiteral("Abriendo…"));
    window.document().apply(JSONContent::fromText(TextRope(SharedText("[1]"))));
    EXPECT_NE(qobject_cast<OpeningPage*>(window.centralWidget()), nullptr);
    window.showDocument();
    EXPECT_FALSE(window.isOpening());
    EXPECT_NE(qobject_cast<TreeView*>(window.centralWidget()), nullptr);
}

TEST_F(EditorViewTests, TheTitleIsTheNameOfTheFile) {
    show("[]");
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Sin título[*]"));
    window->document().configuration().setFileLocation(QStringLiteral("/datos/año.json"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("año.json[*]"));
}

TEST_F(EditorViewTests, ANewWindowHasItsSizeAsFarAsTheScreenHasRoom) {
    show("[]");
    EXPECT_EQ(EditorView::defaultSize(), QSize(scaledPixels(860), scaledPixels(760)));
    EXPECT_EQ(window->size(), EditorView::defaultSize().boundedTo(window->screen()->availableSize()));
}

} // namespace
} // namespace quelm
