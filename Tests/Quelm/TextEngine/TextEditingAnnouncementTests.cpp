#include "Tests/Quelm/TextEngine/EditedText.h"

#include <QSignalSpy>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quelm {
namespace {

TEST(TextEditingAnnouncementTests, EveryEditUndoAndRedoIsAnnouncedOnceInItsFinalState) {
    EditedText text(u"abcd|"_s);
    QStringList announced;
    QObject::connect(&text.editing, &TextEditing::textDidChange, [&] { announced += text.marked(); });
    text.editing.move({0, 2}, 4);
    text.editing.type(u"x"_s);
    text.undoManager.undo();
    text.undoManager.redo();
    EXPECT_EQ(announced, (QStringList{u"cd^ab|"_s, u"cdx|"_s, u"cd^ab|"_s, u"cdx|"_s}));
}

TEST(TextEditingAnnouncementTests, AMovedSelectionIsAnnouncedAfterTheTextOnce) {
    EditedText text(u"ab|"_s);
    QStringList announced;
    QObject::connect(&text.editing, &TextEditing::textDidChange, [&] { announced += u"text"_s; });
    QObject::connect(&text.editing, &TextEditing::selectionDidChange, [&] { announced += u"selection"_s; });
    text.editing.move({0, 1}, 2);
    EXPECT_EQ(announced, (QStringList{u"text"_s, u"selection"_s}));
    text.select(u"|ba"_s);
    announced.clear();
    text.deleteForward();
    EXPECT_EQ(announced, QStringList{u"text"_s}) << "the caret stays";
}

TEST(TextEditingAnnouncementTests, StepsAreRegisteredWhenTheStateHasMovedOn) {
    EditedText text(u"|"_s);
    StateToken token;
    text.undoManager.setStateToken(&token);
    QObject::connect(&text.editing, &TextEditing::textDidChange, &token, &StateToken::advance);

    const StateToken::Value first = token.current();
    text.typeKeys(u"a"_s);
    const StateToken::Value typed = token.current();
    EXPECT_NE(typed, first);
    text.typeKeys(u"b"_s);
    const StateToken::Value joined = token.current();
    EXPECT_NE(joined, typed);
    text.editing.paste(u"c"_s);
    const StateToken::Value pasted = token.current();

    text.undoManager.undo();
    EXPECT_EQ(token.current(), joined);
    text.undoManager.undo();
    EXPECT_EQ(token.current(), first);
    text.undoManager.redo();
    EXPECT_EQ(token.current(), joined);
    text.undoManager.redo();
    EXPECT_EQ(token.current(), pasted);
}

TEST(TextEditingAnnouncementDeathTests, WhoHearsOfAnEditDoesNotMakeAnother) {
    EditedText text(u"|"_s);
    QObject::connect(&text.editing, &TextEditing::textDidChange, [&] { text.editing.paste(u"b"_s); });
    EXPECT_DEATH(text.editing.type(u"a"_s), "announces itself before the next");
}

// Edits made elsewhere.

TEST(TextEditingAnnouncementTests, TheSelectionFollowsEditsMadeElsewhere) {
    EditedText text(u"abc^def|ghi"_s);
    text.storage->replaceCharacters({0, 1}, u"xyz");
    EXPECT_EQ(text.marked(), u"xyzbc^def|ghi"_s);
    text.storage->replaceCharacters({9, 1}, u"");
    EXPECT_EQ(text.marked(), u"xyzbc^def|gi"_s);
}

TEST(TextEditingAnnouncementTests, ReplacingTheWholeTextKeepsLineAndColumn) {
    EditedText text(u"{\"a\": 1,\n^\"b\": |2}"_s);
    text.storage->replaceCharacters({0, text.storage->length()}, u"{\n    \"a\": 1,\n    \"b\": 2\n}");
    EXPECT_EQ(text.marked(), u"{\n^    \"|a\": 1,\n    \"b\": 2\n}"_s);
}

TEST(TextEditingAnnouncementTests, ASelectionThatFollowedIsAnnouncedWhenAllHaveTakenNoteOfTheEdit) {
    EditedText text(u"abc|"_s);
    const QSignalSpy selections(&text.editing, &TextEditing::selectionDidChange);
    const QSignalSpy changes(&text.editing, &TextEditing::textDidChange);
    text.storage->replaceCharacters({0, 1}, u"xyz");
    text.storage->replaceCharacters({0, 1}, u"xyz");
    EXPECT_EQ(selections.count(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return selections.count() > 0; }));
    EXPECT_EQ(selections.count(), 1);
    EXPECT_EQ(changes.count(), 0);
}

TEST(TextEditingAnnouncementTests, StepsOfTheTextAndOfItsDocumentAreUndoneInTurn) {
    EditedText text(u"|"_s);
    text.typeKeys(u"[1]"_s);
    const TextRope before = text.storage->text();
    text.storage->replaceCharacters({0, 3}, u"[\n  1\n]");
    text.undoManager.registerUndo<TextStorage>(text.storage.get(), [before](TextStorage& storage) {
        storage.replaceCharacters({0, storage.length()}, before);
    });
    text.typeKeys(u"x"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.text(), u"[\n  1\n]"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.text(), u"[1]"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"|"_s);
}

} // namespace
} // namespace quelm
