#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEditor/SyntaxHighlighter.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/TextEditor/ColorLetters.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace quelm {
namespace {

using test::colors;

TextRope rope(std::u16string_view text) {
    return TextRope::repairing(text);
}

void highlightAll(TextStorage& storage) {
    SyntaxHighlighter().highlight(storage, {0, storage.length()});
}

std::string colorsOf(std::u16string_view text) {
    TextStorage storage(rope(text));
    highlightAll(storage);
    return colors(storage);
}

TEST(SyntaxHighlighter, ColoursEveryKindOfToken) {
    EXPECT_EQ(colorsOf(u"{\"a\": [\"b\", -1.5, true, false, null]}"), //
              "pkkkp.psssp.nnnnp.bbbbp.bbbbbp.zzzzpp");
}

TEST(SyntaxHighlighter, AnEmptyTextIsLeftAlone) {
    TextStorage storage;
    EXPECT_EQ(SyntaxHighlighter().highlight(storage, {0, 0}), 0);
}

TEST(SyntaxHighlighter, AKeyIsAStringWithAColonAfterSpacesAndTabs) {
    EXPECT_EQ(colorsOf(u"\"a\" \t :1"), "kkk...pn");
    EXPECT_EQ(colorsOf(u"\"a\"\n:1"), "sss.pn");
    EXPECT_EQ(colorsOf(u"\"a\" \r:1"), "sss..pn");
    EXPECT_EQ(colorsOf(u"\"a\"  "), "sss..");
}

TEST(SyntaxHighlighter, AnEscapedQuoteDoesNotEndAString) {
    EXPECT_EQ(colorsOf(u"\"a\\\"b\" 1"), "ssssss.n");
    EXPECT_EQ(colorsOf(u"\"a\\\\\" 1"), "sssss.n");
    EXPECT_EQ(colorsOf(u"\"a\\"), "sss");
    EXPECT_EQ(colorsOf(u"\"\\\u20AC\\\U0001F600\" 1"), "sssssss.n");
}

TEST(SyntaxHighlighter, AStringLeftOpenEndsWithItsLine) {
    EXPECT_EQ(colorsOf(u"[\"abc, 1\n2]"), "pssssssss"
                                          "np");
    EXPECT_EQ(colorsOf(u"\"abc"), "ssss");
}

TEST(SyntaxHighlighter, AStringLeftOpenIsAKeyIfTheNextLineBeginsWithAColonAndIsColouredWithIt) {
    TextStorage storage(rope(u"\"a\n : 1"));
    highlightAll(storage);
    EXPECT_EQ(colors(storage), "kkk.p.n");
    SyntaxHighlighter().highlight(storage, {0, 1});
    EXPECT_EQ(colors(storage), "sss.p.n");
}

TEST(SyntaxHighlighter, ABackslashBeforeALineFeedTakesAStringToTheNextLine) {
    TextStorage storage(rope(u"\"a\\\nb\" : 1"));
    highlightAll(storage);
    EXPECT_EQ(colors(storage), "kkkkkk.p.n");
    SyntaxHighlighter().highlight(storage, {5, 1});
    EXPECT_EQ(colors(storage), "kkkk.sssss");
    SyntaxHighlighter().highlight(storage, {0, 1});
    EXPECT_EQ(colors(storage), "ssss.sssss");
}

TEST(SyntaxHighlighter, OnlyWholeLowerCaseWordsAreLiterals) {
    EXPECT_EQ(colorsOf(u"True nulls Null trueX nul\u00F1 true1"), //
              "................bbbb.......bbbbn");
}

TEST(SyntaxHighlighter, TheShapeOfANumberIsNotChecked) {
    EXPECT_EQ(colorsOf(u"- 1e+5 1-2 .5 +1 1E.e-"), "n.nnnn.nnn..n..n.nnnnn");
    EXPECT_EQ(colorsOf(u"1true"), "nbbbb");
}

TEST(SyntaxHighlighter, CountsCharactersOutsideOfTheBasicPlaneAsTwoUnits) {
    EXPECT_EQ(colorsOf(u"\u00F1 \U0001F600 1 \"\U0001F600\u20AC\" 2"), ".....n.sssss.n");
}

TEST(SyntaxHighlighter, TheWholeLineOfAnEditIsColouredAnew) {
    TextStorage storage(rope(u"[1]\n[\"abc\", 1]\n[2]"));
    storage.setAttributes({0, storage.length()}, {ColorRole::red});
    SyntaxHighlighter().highlight(storage, {7, 0});
    EXPECT_EQ(colors(storage), "rrrr"
                               "psssssp.np."
                               "rrr");
}

TEST(SyntaxHighlighter, AnEditWithinALongStringRecoloursTheWholeLine) {
    TextStorage storage(rope(u"[\"abcd\", 1, \"e\"]"));
    highlightAll(storage);
    storage.replaceCharacters({4, 0}, QStringView(u"\""));
    SyntaxHighlighter().highlight(storage, {4, 1});
    EXPECT_EQ(colors(storage), "pssss..sssssss.ss");
}

TEST(SyntaxHighlighter, ALineFeedTypedInAStringLeavesTheNextLineAsItWas) {
    TextStorage storage(rope(u"[\"abcd\"]"));
    highlightAll(storage);
    storage.replaceCharacters({4, 0}, QStringView(u"\n"));
    SyntaxHighlighter().highlight(storage, {4, 1});
    EXPECT_EQ(colors(storage), "psssssssp");
    SyntaxHighlighter().highlight(storage, {5, 1});
    EXPECT_EQ(colors(storage), "pssss..ss");
}

TEST(SyntaxHighlighter, ARangeOutsideOfTheTextIsClipped) {
    TextStorage storage(rope(u"1\n2"));
    SyntaxHighlighter().highlight(storage, {2, 100});
    EXPECT_EQ(colors(storage), "..n");
    SyntaxHighlighter().highlight(storage, {100, 100});
    SyntaxHighlighter().highlight(storage, {-5, 5});
    EXPECT_EQ(colors(storage), "n.n");
}

TEST(SyntaxHighlighter, TheEmptyLastLineHasNothingToColour) {
    TextStorage storage(rope(u"1\n"));
    SyntaxHighlighter().highlight(storage, {2, 0});
    EXPECT_EQ(colors(storage), "..");
}

TEST(SyntaxHighlighter, SetsItsColoursInOneEdit) {
    TextStorage storage(rope(u"{\"a\": [1, 2]}\n[3]"));
    int edits = 0;
    QObject::connect(&storage, &TextStorage::didProcessEditing, &storage, [&](EditedMask mask) {
        EXPECT_EQ(mask, EditedMask::attributes);
        ++edits;
    });
    highlightAll(storage);
    EXPECT_EQ(edits, 1);
}

TEST(SyntaxHighlighter, ALongTextIsGivenTheBaseAttributesInTheVeryRangeAlone) {
    const std::u16string longest(SyntaxHighlighter::longestColoredText, u'1');
    TextStorage storage(rope(longest));
    storage.setAttributes({0, storage.length()}, {ColorRole::red});
    storage.replaceCharacters({0, 0}, QStringView(u"2"));
    EXPECT_EQ(SyntaxHighlighter().highlight(storage, {10, 5}), 0);
    EXPECT_EQ(colors(storage).substr(0, 20), ".rrrrrrrrr.....rrrrr");
    EXPECT_EQ(storage.attributes().count(), 4);

    storage.replaceCharacters({0, 1}, TextRope());
    SyntaxHighlighter().highlight(storage, {0, 0});
    EXPECT_EQ(storage.attributes().count(), 1) << "of the greatest length that is coloured";
    EXPECT_EQ(storage.attributes().runAfter(0).run.attributes.foreground, ColorRole::blue);
}

TEST(SyntaxHighlighter, AllTextHasTheFixedPitchFontOfTheBody) {
    EXPECT_EQ(SyntaxHighlighter::textFont(), monospacedFont(TextStyle::body));
    EXPECT_EQ(&SyntaxHighlighter::textFont(), &SyntaxHighlighter::textFont());
}

} // namespace
} // namespace quelm
