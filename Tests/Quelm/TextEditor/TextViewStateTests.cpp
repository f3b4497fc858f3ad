#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEditor/TextViewState.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TextViewStateTests : public testing::Test {
protected:
    static std::unique_ptr<JSONTextView> editorOf(std::string_view text) {
        auto document = std::make_shared<JSONDocument>();
        JSONContent content;
        content.text = TextRope(SharedText(text));
        document->apply(std::move(content));
        auto editor = std::make_unique<JSONTextView>(document, nullptr, [] {});
        editor->resize(600, 300);
        editor->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(editor.get()));
        return editor;
    }
    static std::string lines(int count) {
        std::string text;
        for (int line = 0; line < count; ++line)
            text += "línea " + std::to_string(line) + "\n";
        return text;
    }
    static TextRange selection(const JSONTextView& editor) { return editor.textView().selectedRange(); }
};

TEST_F(TextViewStateTests, KeepsSelectionPlaceAndZoomInALongerText) {
    const auto before = editorOf(lines(200));
    TextView& view = before->textView();
    view.setZoom(1.5);
    const qint64 start = view.textStorage().lineStart(120) + 2;
    view.setSelectedRange({start, view.textStorage().lineStart(122) + 4 - start});
    view.verticalAxis().setPosition(1700);
    const auto after = editorOf(lines(300));
    TextViewState::of(*before).restore(*after);
    EXPECT_EQ(selection(*after), selection(*before));
    EXPECT_EQ(after->textView().verticalAxis().position(), 1700);
    EXPECT_EQ(after->textView().zoom(), 1.5);
}

TEST_F(TextViewStateTests, GoesByLineAndColumnWhenLinesHaveOtherLengths) {
    const auto before = editorOf("a\nbc\ndef\n");
    before->textView().setSelectedRange({7, 0}); // "de|f"
    const auto after = editorOf("aaaa\nbbbb\ndddd\n");
    TextViewState::of(*before).restore(*after);
    EXPECT_EQ(selection(*after), (TextRange{12, 0}));
}

TEST_F(TextViewStateTests, EndsWithTheLineAndTheText) {
    const auto before = editorOf(lines(200));
    TextView& view = before->textView();
    view.setSelectedRange({view.textStorage().lineStart(100) + 3, 4});
    view.verticalAxis().setPosition(1000);
    const auto after = editorOf("a\nbc");
    TextViewState::of(*before).restore(*after);
    EXPECT_EQ(selection(*after), (TextRange{4, 0}));
    EXPECT_EQ(after->textView().verticalAxis().position(), 0);
    const auto empty = editorOf("");
    TextViewState::of(*before).restore(*empty);
    EXPECT_EQ(selection(*empty), (TextRange{0, 0}));
}

} // namespace
} // namespace quelm
