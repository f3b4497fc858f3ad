#include "Tests/Quelm/TextEngine/EditedText.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quelm {
namespace {

TextRope rope(const QString& text) {
    return TextRope::repairing(text.toStdU16String());
}

// The selection.

TEST(TextEditingTests, ASelectionIsClampedToTheText) {
    EditedText text(u"|abc"_s);
    text.editing.setSelection({-5, 50});
    EXPECT_EQ(text.marked(), u"^abc|"_s);
    EXPECT_EQ(text.editing.selectedText(), u"abc"_s);
}

TEST(TextEditingTests, ASelectionNeverPartsASurrogatePair) {
    EditedText text(u"|😀😀"_s);
    text.editing.setSelection({3, 1});
    EXPECT_EQ(text.editing.selection(), (TextSelection{2, 0}));
}

TEST(TextEditingTests, OnlyASelectionThatDiffersIsAnnounced) {
    EditedText text(u"|abc"_s);
    const QSignalSpy selections(&text.editing, &TextEditing::selectionDidChange);
    text.editing.setSelection({0, 0});
    EXPECT_EQ(selections.count(), 0);
    text.editing.setSelection({0, 1});
    text.editing.setSelection({1, 0});
    EXPECT_EQ(selections.count(), 2);
}

// Typing.

TEST(TextEditingTests, TypedTextReplacesTheSelection) {
    EditedText text(u"a^bc|d"_s);
    text.editing.type(u"x"_s);
    EXPECT_EQ(text.marked(), u"ax|d"_s);
}

TEST(TextEditingTests, TypingNothingLeavesTheSelection) {
    EditedText text(u"a^bc|d"_s);
    text.editing.type({});
    EXPECT_EQ(text.marked(), u"a^bc|d"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
}

TEST(TextEditingTests, ALineFeedTakesTheIndentationAlong) {
    EditedText text(u"{\n \t \"a\": 1,|}"_s);
    text.editing.typeLineFeed();
    EXPECT_EQ(text.marked(), u"{\n \t \"a\": 1,\n \t |}"_s);
}

TEST(TextEditingTests, LinesThatEndWithAReturnAndALineFeedGoOnDoingSo) {
    EditedText middle(u"{\r\n  \"a\": 1,|\r\n}"_s);
    middle.editing.typeLineFeed();
    EXPECT_EQ(middle.marked(), u"{\r\n  \"a\": 1,\r\n  |\r\n}"_s);
    EditedText last(u"{\r\n}|"_s);
    last.editing.typeLineFeed();
    EXPECT_EQ(last.marked(), u"{\r\n}\r\n|"_s);
    EditedText alone(u"a\rb|"_s);
    alone.editing.typeLineFeed();
    EXPECT_EQ(alone.marked(), u"a\rb\n|"_s);
}

TEST(TextEditingTests, ALineFeedWithinTheIndentationTakesAlongWhatIsBeforeIt) {
    EditedText text(u"  |  a"_s);
    text.editing.typeLineFeed();
    EXPECT_EQ(text.marked(), u"  \n  |  a"_s);
}

TEST(TextEditingTests, ALineFeedReplacesTheSelectionAndIndentsAsItsFirstLine) {
    EditedText text(u"\n |a\n    b^c"_s);
    text.editing.typeLineFeed();
    EXPECT_EQ(text.marked(), u"\n \n |c"_s);
}

TEST(TextEditingTests, OnlySomeThousandsOfAnIndentationAreTakenAlong) {
    EditedText text(QString(100'000, u' ') + u'|');
    text.editing.typeLineFeed();
    EXPECT_LT(text.storage->length(), 110'000);
    EXPECT_GT(text.storage->length(), 101'000);
}

TEST(TextEditingTests, TheHalvesOfASurrogatePairMayComeInTwoCalls) {
    EditedText text(u"|"_s);
    text.editing.type(QString(QChar(0xD83D)));
    EXPECT_EQ(text.marked(), u"|"_s);
    text.editing.type(QString(QChar(0xDE00)));
    EXPECT_EQ(text.marked(), u"😀|"_s);
}

TEST(TextEditingTests, LoneSurrogatesAreReplaced) {
    EditedText text(u"|"_s);
    text.editing.type(QString(QChar(0xDE00)));
    text.editing.type(QString(QChar(0xD83D)));
    text.editing.type(u"a"_s);
    EXPECT_EQ(text.marked(), u"\uFFFD\uFFFDa|"_s);
}

TEST(TextEditingTests, AHighSurrogateIsForgottenWhenSomethingElseComesFirst) {
    EditedText text(u"|a"_s);
    text.editing.type(QString(QChar(0xD83D)));
    text.editing.deleteSelectionOr(1);
    text.editing.type(QString(QChar(0xD83D)));
    text.editing.endTypingStep();
    text.editing.type(u"b"_s);
    EXPECT_EQ(text.marked(), u"b|"_s);
}

TEST(TextEditingTests, OverwritingReplacesAsManyCharactersAsAreTyped) {
    EditedText text(u"|e\u0301🇪🇸cd"_s);
    text.editing.setOverwriting(true);
    text.editing.type(u"x"_s);
    EXPECT_EQ(text.marked(), u"x|🇪🇸cd"_s);
    text.editing.type(u"yz"_s);
    EXPECT_EQ(text.marked(), u"xyz|d"_s);
}

TEST(TextEditingTests, OverwritingStopsAtTheEndOfTheLine) {
    EditedText text(u"a|b\nc"_s);
    text.editing.setOverwriting(true);
    text.typeKeys(u"xyz"_s);
    EXPECT_EQ(text.marked(), u"axyz|\nc"_s);

    EditedText carriageReturn(u"|\r\nc"_s);
    carriageReturn.editing.setOverwriting(true);
    carriageReturn.typeKeys(u"x"_s);
    EXPECT_EQ(carriageReturn.marked(), u"x|\r\nc"_s);
}

TEST(TextEditingTests, OverwritingASelectionReplacesNoMore) {
    EditedText text(u"|ab^cd"_s);
    text.editing.setOverwriting(true);
    text.editing.type(u"x"_s);
    EXPECT_EQ(text.marked(), u"x|cd"_s);
}

TEST(TextEditingTests, ALineFeedOverwritesNothing) {
    EditedText text(u"a|b"_s);
    text.editing.setOverwriting(true);
    text.editing.typeLineFeed();
    EXPECT_EQ(text.marked(), u"a\n|b"_s);
}

// Commands.

TEST(TextEditingTests, PastingReplacesTheSelectionInAStepOfItsOwn) {
    EditedText text(u"a^bc|d"_s);
    text.editing.paste(u"uno\ndos"_s);
    EXPECT_EQ(text.marked(), u"auno\ndos|d"_s);
    EXPECT_EQ(text.undoManager.undoActionName(), u"Pegar"_s);
    text.typeKeys(u"x"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"auno\ndos|d"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a^bc|d"_s);
    text.undoManager.redo();
    EXPECT_EQ(text.marked(), u"auno\ndos|d"_s);
}

TEST(TextEditingTests, PastingAMegabyteIsOneEdit) {
    EditedText text(u"[|]"_s);
    const QSignalSpy edits(text.storage.get(), &TextStorage::didProcessEditing);
    text.editing.paste(QString(1 << 20, u'ñ'));
    EXPECT_EQ(edits.count(), 1);
    EXPECT_EQ(text.storage->length(), (1 << 20) + 2);
}

TEST(TextEditingTests, PastingNothingLeavesTheSelection) {
    EditedText text(u"a^bc|d"_s);
    text.editing.paste(QString());
    EXPECT_EQ(text.marked(), u"a^bc|d"_s);
}

TEST(TextEditingTests, CuttingDeletesTheSelection) {
    EditedText text(u"a^bc|d"_s);
    text.editing.cut();
    EXPECT_EQ(text.marked(), u"a|d"_s);
    EXPECT_EQ(text.undoManager.undoActionName(), u"Cortar"_s);
    text.editing.cut();
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a^bc|d"_s);
    EXPECT_FALSE(text.undoManager.canUndo()) << "there was nothing to cut the second time";
}

TEST(TextEditingTests, OneLineTextsTakeLineFeedsAsSpaces) {
    EditedText text(u"|"_s);
    text.editing.setSingleLine(true);
    text.editing.paste(u"a\nb\r\nc\n\nd"_s);
    text.editing.type(u"\n"_s);
    text.editing.typeLineFeed();
    text.editing.commitComposition(u"\n"_s, {12, 0});
    EXPECT_EQ(text.text(), u"a b c  d   "_s);
    text.editing.replace({0, 1}, rope(u"\n"_s), u"Reemplazar"_s);
    EXPECT_EQ(text.text(), u"\n b c  d   "_s);
}

TEST(TextEditingTests, ACompositionReplacesWhatTheInputMethodSays) {
    EditedText text(u"abcd|"_s);
    text.editing.commitComposition(u"日本"_s, {2, 2});
    EXPECT_EQ(text.marked(), u"ab日本|"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"ab^cd|"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
}

TEST(TextEditingTests, ACompositionThatReplacesNothingReplacesTheSelection) {
    EditedText text(u"a|bc^d"_s);
    text.editing.commitComposition(u"日"_s, {1, 0});
    EXPECT_EQ(text.marked(), u"a日|d"_s);
}

TEST(TextEditingTests, ReplacingElsewhereSelectsWhatWasInserted) {
    EditedText text(u"uno dos|"_s);
    text.editing.replace({0, 3}, rope(u"tres"_s), u"Reemplazar"_s);
    EXPECT_EQ(text.marked(), u"^tres| dos"_s);
    EXPECT_EQ(text.undoManager.undoActionName(), u"Reemplazar"_s);
    text.editing.replace({4, 1}, {}, u"Reemplazar"_s);
    EXPECT_EQ(text.marked(), u"tres|dos"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"tres^ |dos"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"^uno| dos"_s);
    text.undoManager.redo();
    EXPECT_EQ(text.marked(), u"^tres| dos"_s);
}

TEST(TextEditingTests, MovedTextIsSelected) {
    for (const auto& [target, expected] : {std::pair{0, u"^cd|abef"_s}, std::pair{6, u"abef^cd|"_s}}) {
        EditedText text(u"abcdef|"_s);
        text.editing.move({2, 2}, target);
        EXPECT_EQ(text.marked(), expected);
        EXPECT_EQ(text.undoManager.undoActionName(), u"Mover"_s);
        text.undoManager.undo();
        EXPECT_EQ(text.marked(), u"ab^cd|ef"_s);
        text.undoManager.redo();
        EXPECT_EQ(text.marked(), expected);
    }
}

TEST(TextEditingTests, TextIsNotMovedToWhereItIs) {
    EditedText text(u"abcdef|"_s);
    text.editing.move({2, 2}, 2);
    text.editing.move({2, 2}, 4);
    EXPECT_EQ(text.text(), u"abcdef"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
}

TEST(TextEditingDeathTests, AStretchIsNotMovedIntoItself) {
    EditedText text(u"abcdef|"_s);
    EXPECT_DEATH(text.editing.move({1, 3}, 2), "not moved into itself");
}

TEST(TextEditingTests, ATextThatOnlyLooksIsNotEdited) {
    EditedText text(u"a^b|c"_s);
    text.editing.setReadOnly(true);
    text.editing.type(u"x"_s);
    text.editing.typeLineFeed();
    text.editing.deleteSelectionOr(0);
    text.editing.paste(u"x"_s);
    text.editing.cut();
    text.editing.commitComposition(u"x"_s, {0, 1});
    text.editing.replace({0, 1}, rope(u"x"_s), u"Reemplazar"_s);
    text.editing.move({0, 1}, 3);
    EXPECT_EQ(text.marked(), u"a^b|c"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
}

TEST(TextEditingTests, StepsOfATextThatNowOnlyLooksAreUndone) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.editing.setReadOnly(true);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"|"_s);
    EXPECT_TRUE(text.undoManager.canRedo());
}

TEST(TextEditingTests, WithoutAManagerEditsAreMadeAllTheSame) {
    EditedText text(u"|"_s);
    text.editing.setUndoManager(nullptr);
    const QSignalSpy changes(&text.editing, &TextEditing::textDidChange);
    text.typeKeys(u"ab"_s);
    EXPECT_EQ(text.marked(), u"ab|"_s);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_FALSE(text.undoManager.canUndo());
}

} // namespace
} // namespace quelm
