#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEditor/LineNumberGutter.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class JSONTextViewTests : public testing::Test {
protected:
    ~JSONTextViewTests() override { editor.reset(); }

    void open(std::optional<std::string_view> text) {
        JSONContent content;
        if (text)
            content.text = TextRope(SharedText(*text));
        document->apply(std::move(content));
        editor = std::make_unique<JSONTextView>(document, &undoManager, [this] {
            ++changes;
            document->noteTextBufferEdited();
        });
        editor->resize(600, 300);
        editor->show();
        editor->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(editor.get()));
    }
    TextView& view() { return editor->textView(); }
    QString shown() { return view().textStorage().string({0, view().textStorage().length()}); }
    ColorRole colorAt(qint64 offset) {
        return view().textStorage().attributes().runAfter(offset).run.attributes.foreground;
    }

    std::shared_ptr<JSONDocument> document = std::make_shared<JSONDocument>();
    UndoManager undoManager;
    std::unique_ptr<JSONTextView> editor;
    int changes = 0;
};

TEST_F(JSONTextViewTests, ShowsTheDocumentsTextColouredAndNumbered) {
    open("{\n  \"a\": [1, true]\n}");
    EXPECT_EQ(shown(), QStringLiteral("{\n  \"a\": [1, true]\n}"));
    EXPECT_EQ(colorAt(4), ColorRole::purple);
    EXPECT_EQ(colorAt(10), ColorRole::blue);
    EXPECT_EQ(colorAt(13), ColorRole::orange);
    EXPECT_EQ(editor->gutter().lineStarts().count(), 3);
    EXPECT_EQ(view().selectedRange(), TextRange());
    EXPECT_EQ(changes, 0) << "nothing was changed by the user";
}

TEST_F(JSONTextViewTests, ADocumentWithoutTextIsEmpty) {
    open(std::nullopt);
    EXPECT_EQ(shown(), QString());
    EXPECT_EQ(editor->gutter().lineStarts().count(), 1);
}

TEST_F(JSONTextViewTests, ItsStorageIsTheDocumentsTextBuffer) {
    open("[1]");
    EXPECT_EQ(document->textBuffer(), view().sharedTextStorage());
    QTest::keyClicks(&view(), QStringLiteral("  "));
    EXPECT_TRUE(document->isTextBufferEdited());
    EXPECT_EQ(document->snapshot().text->contiguous().view(), "  [1]");
}

TEST_F(JSONTextViewTests, TheCaretIsInTheTextAsSoonAsItIsShown) {
    open("[1]");
    EXPECT_TRUE(QTest::qWaitFor([this] { return view().hasFocus(); }));
    EXPECT_FALSE(editor->findBar().isVisible());
}

TEST_F(JSONTextViewTests, LinesNeverWrapAndTheFontIsFixedPitch) {
    open("[" + std::string(5000, ' ') + "]");
    EXPECT_EQ(view().visibleRows().size(), 1u);
    EXPECT_GT(view().horizontalAxis().maximum(), 0);
    EXPECT_EQ(view().textLayout().font().font().pixelSize(), SyntaxHighlighter::textFont().pixelSize());
}

TEST_F(JSONTextViewTests, TypingUpdatesTheLineListAndRecoloursTheLine) {
    open("[1,\ntrue]");
    view().setSelectedRange({2, 0});
    QTest::keyClick(&view(), Qt::Key_Return);
    EXPECT_EQ(shown(), QStringLiteral("[1\n,\ntrue]"));
    EXPECT_EQ(editor->gutter().lineStarts().count(), 3);
    QTest::keyClicks(&view(), QStringLiteral("\""));
    EXPECT_EQ(colorAt(3), ColorRole::green);
    EXPECT_EQ(colorAt(4), ColorRole::green) << "what was punctuation is in a string now";
    EXPECT_EQ(changes, 2);
}

TEST_F(JSONTextViewTests, ChangingColoursAloneChangesNeitherLinesNorColoursElsewhere) {
    open("[1,\ntrue]");
    view().textStorage().setAttributes({0, 9}, TextAttributes{ColorRole::red});
    EXPECT_EQ(colorAt(1), ColorRole::red) << "the line is not coloured anew";
    EXPECT_EQ(colorAt(5), ColorRole::red);
    EXPECT_EQ(editor->gutter().lineStarts().count(), 2);
    EXPECT_EQ(changes, 0);
}

TEST_F(JSONTextViewTests, QuotesAndHyphensStayAsTheyAreTyped) {
    open("");
    QTest::keyClicks(&view(), QStringLiteral("\"it's -- 'so'\""));
    EXPECT_EQ(shown(), QStringLiteral("\"it's -- 'so'\""));
}

TEST_F(JSONTextViewTests, ARequestMovesTheCaretOnceAndAnotherOneOfTheSamePlaceAgain) {
    open("a\nbb\ncc");
    const TextLocation request(3, 2);
    editor->setGoTo(request);
    EXPECT_EQ(view().selectedRange(), (TextRange{6, 0}));
    EXPECT_TRUE(view().isShowingFindIndicator());
    view().setSelectedRange({0, 0});
    editor->setGoTo(request);
    EXPECT_EQ(view().selectedRange(), (TextRange{0, 0}));
    editor->setGoTo(TextLocation(3, 2));
    EXPECT_EQ(view().selectedRange(), (TextRange{6, 0}));
}

TEST_F(JSONTextViewTests, TheBracketsAroundTheCaretAreShownAndGoWithTheNextMove) {
    open("[1, {\"]\": 2}]");
    view().setSelectedRange({1, 0});
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return view().bracketRanges() == std::vector<TextRange>{TextRange{0, 1}, TextRange{12, 1}}; }));
    view().setSelectedRange({2, 0});
    EXPECT_TRUE(QTest::qWaitFor([this] { return view().bracketRanges().empty(); }));
}

} // namespace
} // namespace quelm
