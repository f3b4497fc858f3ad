#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/Foundation/Fonts.h"
#include "Tests/Quelm/EditorWindow/EditorViewTest.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>

namespace quelm {
namespace {

class EditorViewTests : public EditorViewTest {};

TEST_F(EditorViewTests, AValidDocumentIsShownAsATree) {
    show("{\"a\":1}");
    ASSERT_NE(tree(), nullptr);
    EXPECT_EQ(tree()->editor().outline().rowCount(), 2);
    EXPECT_EQ(window->focusWidget(), tree());
}

TEST_F(EditorViewTests, AnInvalidDocumentIsShownAsTextWithThePlaceOfItsError) {
    show("{\"a\":1,\n\n  \"b\": [1, 2 3]}");
    ASSERT_NE(text(), nullptr);
    EXPECT_EQ(window->model().validator().state().error()->column, 14);
    QTRY_COMPARE(window->documentStatusBar().contents().stateText,
                 QStringLiteral("Línea 3, columna 14: Se esperaba ',' o ']'"));
    EXPECT_EQ(textView().textStorage().lineCount(), 3);
}

TEST_F(EditorViewTests, TheCaretOfAnInvalidDocumentIsAtItsError) {
    show("{\"a\":1,\n\n  \"b\": [1, 2 3]}");
    QTRY_COMPARE(textView().selectedRange().location, 9 + 13);
    EXPECT_TRUE(textView().isShowingFindIndicator());
}

TEST_F(EditorViewTests, AnEmptyFileIsShownAsTextWithItsError) {
    show("");
    ASSERT_NE(text(), nullptr);
    QTRY_COMPARE(window->documentStatusBar().contents().stateText,
                 QStringLiteral("Línea 1, columna 1: Se esperaba un valor"));
}

TEST_F(EditorViewTests, AValidDocumentIsShownAsTextWhenThatIsPreferred) {
    Preferences::setInitialMode(Preferences::InitialMode::text);
    show("{ \"a\" :1}");
    ASSERT_NE(text(), nullptr);
    EXPECT_TRUE(window->model().validator().state().isValid());
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
    QTRY_COMPARE(window->documentStatusBar().contents().stateText,
                 QStringLiteral("Línea 1, columna 4: Valor inesperado"));
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

TEST_F(EditorViewTests, ADocumentThatIsStillToComeIsAnnouncedAndNothingCanBeDoneWithIt) {
    EditorView window(std::make_shared<JSONDocument>());
    window.show();
    EXPECT_TRUE(window.isOpening());
    ASSERT_NE(qobject_cast<OpeningPage*>(window.editorArea()), nullptr);
    EXPECT_EQ(window.editorArea()->findChild<QLabel*>()->text(), QStringLiteral("Abriendo…"));
    EXPECT_FALSE(window.modePicker().isEnabled());
    for (const QAction* action : window.toolBar().actions())
        EXPECT_FALSE(action->isEnabled());
    EXPECT_FALSE(window.documentStatusBar().isVisible());

    window.document().apply(JSONContent::fromText(TextRope(SharedText("[1]"))));
    EXPECT_NE(qobject_cast<OpeningPage*>(window.editorArea()), nullptr);
    window.showDocument();
    EXPECT_FALSE(window.isOpening());
    EXPECT_NE(window.treeView(), nullptr);
    EXPECT_TRUE(window.modePicker().isEnabled());
    EXPECT_TRUE(window.documentStatusBar().isVisible());
}

TEST_F(EditorViewTests, AnEditorThatIsReplacedGoesOnceItsEventIsOver) {
    show("[1]");
    const QPointer<QWidget> before = window->editorArea();
    replace("[1,");
    EXPECT_NE(before, nullptr);
    EXPECT_FALSE(before->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(before, nullptr);
}

TEST_F(EditorViewTests, AWindowGoesWithTheEditorsThatItHasReplaced) {
    show("[1]");
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    window->treeEditor().activate();
    replace("[1,");
    replace("[2]");
    const QPointer<QWidget> area = window->editorArea();
    window.reset();
    EXPECT_EQ(area, nullptr);
}

TEST_F(EditorViewTests, AFieldOfTheTreeDoesNotReachAnAppliedContent) {
    show("[1]");
    activate();
    window->treeEditor().select(window->treeEditor().outline().rowID(1));
    window->treeEditor().activate();
    QTest::keyClicks(&tree()->inlineField()->textView(), QStringLiteral("23"));
    replace("[1,");
    QTest::qWait(0);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(savedText(), "[1,");
    EXPECT_EQ(window->treeEditor().editing(), std::nullopt);
}

TEST_F(EditorViewTests, AnEditorThatIsReplacedPassesItsFocusOn) {
    show("[1]");
    activate();
    EXPECT_TRUE(tree()->hasFocus());
    replace("[1,");
    EXPECT_TRUE(textView().hasFocus());
    replace("[1]");
    EXPECT_TRUE(tree()->hasFocus());
}

TEST_F(EditorViewTests, TheFocusStaysWhereTheUserHasPutItElsewhere) {
    show("[1]");
    activate();
    button(QStringLiteral("Compactar"))->setFocus(Qt::TabFocusReason);
    replace("[1,2]");
    Preferences::setInitialMode(Preferences::InitialMode::text);
    replace("[1,2,3]");
    QTest::qWait(0);
    ASSERT_NE(text(), nullptr);
    EXPECT_TRUE(button(QStringLiteral("Compactar"))->hasFocus());
}

TEST_F(EditorViewTests, TheTitleIsTheNameOfTheFile) {
    show("[]");
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Sin título[*]"));
    window->document().configuration().setFileLocation(QStringLiteral("/datos/año.json"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("año.json[*]"));
}

TEST_F(EditorViewTests, TheEditorIsOverALineAndTheStatusBar) {
    show("[1]");
    const QRect area(tree()->mapTo(window.get(), QPoint()), tree()->size());
    const QRect status(window->documentStatusBar().mapTo(window.get(), QPoint()), window->documentStatusBar().size());
    EXPECT_EQ(status.top(), area.bottom() + 1 + 1);
    EXPECT_EQ(area.width(), window->width());
    EXPECT_EQ(status.bottom(), window->rect().bottom());
    window->resize(window->width(), window->height() + 50);
    QTest::qWait(0);
    EXPECT_EQ(tree()->height(), area.height() + 50);
}

TEST_F(EditorViewTests, ALockKeepsTheDocumentAsItIsUntilItEnds) {
    showAsText("[1]");
    QTest::keyClicks(&textView(), QStringLiteral(" "));
    window->setEditingLocked(true);
    QTest::keyClicks(&textView(), QStringLiteral("x"));
    EXPECT_EQ(shownText(), QStringLiteral(" [1]"));
    EXPECT_FALSE(window->undoManager().canUndo());
    EXPECT_TRUE(window->treeEditor().isReadOnly());
    EXPECT_FALSE(button(QStringLiteral("Embellecer"))->isEnabled());
    EXPECT_FALSE(window->modePicker().isEnabled());

    window->setEditingLocked(false);
    QTest::keyClicks(&textView(), QStringLiteral("x"));
    EXPECT_EQ(shownText(), QStringLiteral(" x[1]"));
    EXPECT_TRUE(window->undoManager().canUndo());
    EXPECT_TRUE(button(QStringLiteral("Embellecer"))->isEnabled());
}

TEST_F(EditorViewTests, ALockOutlastsAnOperationThatEndsMeanwhile) {
    showAsText("[1]");
    window->model().format(JSONStyle::compact());
    window->setEditingLocked(true);
    ASSERT_TRUE(finishOperation());
    EXPECT_TRUE(textView().isReadOnly());
    EXPECT_TRUE(window->treeEditor().isReadOnly());
    EXPECT_TRUE(window->undoManager().isSuspended());
}

TEST_F(EditorViewTests, ANewWindowHasItsSizeAsFarAsTheScreenHasRoom) {
    show("[]");
    EXPECT_EQ(EditorView::defaultSize(), QSize(scaledPixels(860), scaledPixels(760)));
    // A desktop puts a title bar and a frame around it.
    const QSize room = window->screen()->availableSize() - QSize(scaledPixels(16), scaledPixels(64));
    EXPECT_EQ(window->size(), EditorView::defaultSize().boundedTo(room));
}

} // namespace
} // namespace quelm
