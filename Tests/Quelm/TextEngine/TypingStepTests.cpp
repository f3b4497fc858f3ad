#include "Tests/Quelm/TextEngine/EditedText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quelm {
namespace {

TEST(TypingStepTests, TypedCharactersAreOneStep) {
    EditedText text(u"a|b"_s);
    text.typeKeys(u"xyz"_s);
    EXPECT_EQ(text.marked(), u"axyz|b"_s);
    EXPECT_EQ(text.undoManager.undoActionName(), u"Escribir"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|b"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
    text.undoManager.redo();
    EXPECT_EQ(text.marked(), u"axyz|b"_s);
}

TEST(TypingStepTests, TypingOverASelectionBeginsAStepThatBringsItBack) {
    EditedText text(u"[1, |2^]"_s);
    text.typeKeys(u"345"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"[1, |2^]"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
}

TEST(TypingStepTests, ALineFeedIsTheLastOfItsStep) {
    EditedText text(u"|"_s);
    text.typeKeys(u"ab"_s);
    text.editing.typeLineFeed();
    text.typeKeys(u"cd"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"ab\n|"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"|"_s);
}

TEST(TypingStepTests, LineFeedsInARowAreStepsOfTheirOwn) {
    EditedText text(u"|"_s);
    text.editing.typeLineFeed();
    text.editing.type(u"\n"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"\n|"_s);
}

TEST(TypingStepTests, APauseEndsAStep) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.time += TextEditing::longestTypingPause;
    text.typeKeys(u"b"_s);
    text.time += TextEditing::longestTypingPause + 1;
    text.typeKeys(u"c"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"ab|"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"|"_s);
}

TEST(TypingStepTests, ACaretMoveEndsAStepEvenWhenItComesBack) {
    EditedText text(u"|"_s);
    text.typeKeys(u"ab"_s);
    text.select(u"a|b"_s);
    text.select(u"ab|"_s);
    text.typeKeys(u"c"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"ab|"_s);
}

TEST(TypingStepTests, SettingTheSelectionThereIsEndsNothing) {
    EditedText text(u"|"_s);
    text.typeKeys(u"ab"_s);
    text.select(u"ab|"_s);
    text.typeKeys(u"c"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"|"_s);
}

TEST(TypingStepTests, WhoeverEndsTheStepSeparatesWhatFollows) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.editing.endTypingStep();
    text.typeKeys(u"b"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|"_s);
}

TEST(TypingStepTests, TypingAndDeletingAreStepsOfTheirOwn) {
    EditedText text(u"|"_s);
    text.typeKeys(u"abc"_s);
    text.backspace();
    EXPECT_EQ(text.undoManager.undoActionName(), u"Borrar"_s);
    text.typeKeys(u"d"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"ab|"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"ab^c|"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"|"_s);
}

TEST(TypingStepTests, DeletionsOnBothSidesOfThePlaceAreOneStep) {
    EditedText text(u"abc|def"_s);
    text.backspace();
    text.deleteForward();
    text.backspace();
    text.deleteForward();
    EXPECT_EQ(text.marked(), u"a|f"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a^bcde|f"_s) << "what it brings back is selected";
    EXPECT_FALSE(text.undoManager.canUndo());
    text.undoManager.redo();
    EXPECT_EQ(text.marked(), u"a|f"_s);
}

TEST(TypingStepTests, DeletionsOfWordsAndSelectionsStandAlone) {
    EditedText text(u"uno dos tres|"_s);
    text.editing.deleteSelectionOr(8);
    text.editing.deleteSelectionOr(4);
    text.backspace();
    EXPECT_EQ(text.marked(), u"uno|"_s);
    text.select(u"u^no|"_s);
    text.backspace();
    text.backspace();
    EXPECT_EQ(text.marked(), u"|"_s);
    for (const QString& expected : {u"^u|"_s, u"u^no|"_s, u"uno^ |"_s, u"uno ^dos |"_s, u"uno dos ^tres|"_s}) {
        text.undoManager.undo();
        EXPECT_EQ(text.marked(), expected);
        EXPECT_EQ(text.undoManager.redoActionName(), u"Borrar"_s);
    }
}

TEST(TypingStepTests, AnotherStepOfTheManagerEndsTyping) {
    EditedText text(u"|"_s);
    QObject other;
    text.typeKeys(u"a"_s);
    text.undoManager.registerUndo<QObject>(&other, [](QObject&) {});
    text.typeKeys(u"b"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|"_s);
}

TEST(TypingStepTests, UndoingAndRedoingEndTyping) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.undoManager.undo();
    text.undoManager.redo();
    EXPECT_EQ(text.marked(), u"a|"_s);
    text.typeKeys(u"b"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|"_s);
}

TEST(TypingStepTests, TypingOnAfterStepsWereUndoneDropsThem) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.editing.endTypingStep();
    text.typeKeys(u"b"_s);
    text.undoManager.undo();
    text.typeKeys(u"c"_s);
    EXPECT_FALSE(text.undoManager.canRedo());
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|"_s) << "what was typed on is a step of its own";
}

TEST(TypingStepTests, AnEditMadeElsewhereEndsTyping) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.storage->replaceCharacters({1, 0}, u"!");
    text.typeKeys(u"b"_s);
    text.storage->replaceCharacters({2, 1}, u"");
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|"_s);
}

TEST(TypingStepTests, OverwritingIsOneStepThatBringsBackWhatWasThere) {
    EditedText text(u"|abcd"_s);
    text.editing.setOverwriting(true);
    text.typeKeys(u"xyz"_s);
    EXPECT_EQ(text.marked(), u"xyz|d"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"^abc|d"_s);
    EXPECT_FALSE(text.undoManager.canUndo());
}

TEST(TypingStepTests, ACompositionIsAStepOfItsOwn) {
    EditedText text(u"|"_s);
    text.typeKeys(u"a"_s);
    text.editing.commitComposition(u"é"_s, {1, 0});
    text.typeKeys(u"b"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"aé|"_s);
    EXPECT_EQ(text.undoManager.undoActionName(), u"Escribir"_s);
    text.undoManager.undo();
    EXPECT_EQ(text.marked(), u"a|"_s);
}

TEST(TypingStepTests, StepsOfAClosedTextAreDropped) {
    UndoManager manager;
    const auto storage = std::make_shared<TextStorage>();
    {
        TextEditing editing(storage);
        editing.setUndoManager(&manager);
        editing.type(u"a"_s);
        EXPECT_TRUE(manager.canUndo());
    }
    manager.undo();
    EXPECT_EQ(storage->length(), 1);
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
}

} // namespace
} // namespace quelm
