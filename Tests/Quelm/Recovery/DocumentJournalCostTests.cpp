// What a change writes follows the change, not the document.

#include "TextCore/MatchReplacement.h"
#include "Tests/Quelm/Recovery/JournaledDocumentTest.h"

namespace quelm {
namespace {

constexpr std::size_t fewKilobytes = 8192;

/// About 20 MB: objects of some members, the first of which alone holds the word "zorro".
std::string largeText() {
    std::string text = "[\n  {\"nombre\": \"zorro\", \"lista\": [1, 2, 3]}";
    for (int number = 0; text.size() < 20'000'000; ++number)
        text += ",\n  {\"nombre\": \"niño " + std::to_string(number) + "\", \"lista\": [1, 2, 3], \"nulo\": null}";
    return text + "\n]\n";
}

class DocumentJournalCostTests : public JournaledDocumentTest {
protected:
    /// What is written since the last call, at most.
    std::size_t written() { return journalSize() - std::exchange(sizeBefore, bytesWritten); }

    void replaceAll(std::string_view old, std::string_view replacement) {
        const TextRope text = document.textBuffer()->text();
        const auto pattern = SearchPattern(old, CaseSensitivity::sensitive);
        const auto change = replacingMatches(text, pattern, replacement, 1'000'000'000);
        ASSERT_TRUE(change && change->count > 0);
        const TextRope after = text.replacing(change->range, change->replacement);
        const auto start = text.summaryBefore(change->range.location).utf16;
        const auto end = text.summaryBefore(change->range.end()).utf16;
        document.textBuffer()->replaceCharacters({start, end - start}, change->replacement);
        document.noteTextBufferEdited();
        EXPECT_EQ(document.textBuffer()->text(), after);
    }

    const std::string text = largeText();
    std::size_t sizeBefore = 0;
};

TEST_F(DocumentJournalCostTests, TypingInALargeText) {
    openText(text);
    for (int key = 0; key < 50; ++key)
        typeAt(document.textBuffer()->length() / 2, 0, QStringLiteral("a"));
    EXPECT_LT(written(), fewKilobytes);
    EXPECT_EQ(recovered(), bufferText());
}

TEST_F(DocumentJournalCostTests, UndoingThatAllIsDeleted) {
    openText(text);
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    document.noteTextBufferEdited();
    EXPECT_LT(written(), fewKilobytes);
    EXPECT_EQ(recovered(), text);
}

TEST_F(DocumentJournalCostTests, DeletingAndUndoingAfterOtherEdits) {
    openText(text);
    for (int edit = 0; edit < 20; ++edit)
        typeAt(document.textBuffer()->length() / 20 * edit, 0, QStringLiteral("x"));
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    written();
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    document.noteTextBufferEdited();
    EXPECT_LT(written(), 20 * 2048U);
    EXPECT_EQ(recovered(), bufferText());
}

TEST_F(DocumentJournalCostTests, ReplacingAllMatchesAndUndoingIt) {
    openText(text);
    // At both ends of the text, so that the edit is about all of it.
    typeAt(document.textBuffer()->length(), 0, QStringLiteral("zorro"));
    const TextRope before = document.textBuffer()->text();
    replaceAll("zorro", "lobo");
    document.textBuffer()->replaceCharacters({0, document.textBuffer()->length()}, before);
    document.noteTextBufferEdited();
    EXPECT_LT(written(), 2 * fewKilobytes);
    EXPECT_EQ(recovered(), bufferText());
}

TEST_F(DocumentJournalCostTests, FormattingUndoingAndDoingItAgain) {
    openText(text);
    reformat(JSONStyle::compact());
    manager.undo();
    manager.redo();
    EXPECT_LT(written(), fewKilobytes);
    EXPECT_EQ(recovered(), bufferText());
}

TEST_F(DocumentJournalCostTests, EditingALargeTree) {
    openTree(text);
    const NodeID first = child(0);
    applyEdits({TreeEdit::setValue(tree().children(first)[0], NodeKind::string, "lobo")});
    applyEdits({TreeEdit::setKey(tree().children(first)[1], "otra")});
    // Everything gives way to an empty string, and comes back.
    undoList = document.applyTreeChange([](JSONTree& tree) {
        return tree.kindChange(tree.root(), NodeKind::string);
    })->inverse;
    undoEdits();
    document.applyTreeChange([&](JSONTree& tree) { return tree.duplicateChange(first); });
    EXPECT_LT(written(), fewKilobytes);
    EXPECT_EQ(recovered(), savedText());
}

TEST_F(DocumentJournalCostTests, SavingALargeTextAndTypingOn) {
    openText(text);
    typeAt(0, 0, QStringLiteral(" "));
    beginSave();
    typeAt(0, 0, QStringLiteral(" "));
    replaceFile();
    endSave();
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    document.noteTextBufferEdited();
    EXPECT_LT(written(), fewKilobytes);
    EXPECT_EQ(recovered(), bufferText());
}

} // namespace
} // namespace quelm
