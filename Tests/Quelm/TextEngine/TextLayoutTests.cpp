#include "Quelm/TextEngine/TextLayout.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

TEST(TextLayout, ARowIsALineWhenLinesDoNotWrap) {
    const LaidOutText text(u"uno\n\ndos\n");
    EXPECT_EQ(text.layout.rowCount(), 4);
    EXPECT_EQ(text.layout.rowRange(0), (TextRange{0, 3}));
    EXPECT_EQ(text.layout.rowRange(1), (TextRange{4, 0}));
    EXPECT_EQ(text.layout.rowRange(3), (TextRange{9, 0}));
    EXPECT_EQ(text.layout.rowOf(3), 0);
    EXPECT_EQ(text.layout.rowOf(4), 1);
    EXPECT_EQ(text.layout.lineOf(2), 2);
    EXPECT_EQ(text.layout.firstRowOf(2), 2);
}

TEST(TextLayout, AnEmptyTextHasOneEmptyRow) {
    const LaidOutText text(u"");
    EXPECT_EQ(text.layout.rowCount(), 1);
    EXPECT_EQ(text.layout.x(0), 0);
    EXPECT_EQ(text.layout.width(0), 0);
    EXPECT_EQ(text.layout.offsetAt(0, 50), 0);
    EXPECT_TRUE(text.layout.isBesideText(0, 1));
}

TEST(TextLayout, PrintableCharactersStandOnAGrid) {
    const LaidOutText text(u"abc\ndefgh");
    for (qint64 column = 0; column <= 5; ++column)
        EXPECT_DOUBLE_EQ(text.layout.x(4 + column), static_cast<double>(column) * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.width(1), 5 * text.advance());
    EXPECT_FALSE(text.layout.isBesideText(1, 4.9 * text.advance()));
    EXPECT_TRUE(text.layout.isBesideText(1, 5.1 * text.advance()));
}

TEST(TextLayout, AClickGoesToTheNearerSideOfACharacter) {
    const LaidOutText text(u"abc\ndefgh");
    EXPECT_EQ(text.layout.offsetAt(1, -10), 4);
    EXPECT_EQ(text.layout.offsetAt(1, 1.4 * text.advance()), 5);
    EXPECT_EQ(text.layout.offsetAt(1, 1.6 * text.advance()), 6);
    EXPECT_EQ(text.layout.offsetAt(1, 1e9), 9);
}

TEST(TextLayout, TabsReachToTheNextStop) {
    const LaidOutText text(u"\ta\tabcd\tx");
    const double stop = text.layout.font().tabWidth();
    EXPECT_DOUBLE_EQ(text.layout.x(1), stop);
    EXPECT_DOUBLE_EQ(text.layout.x(2), stop + text.advance());
    EXPECT_DOUBLE_EQ(text.layout.x(3), 2 * stop);
    EXPECT_DOUBLE_EQ(text.layout.x(7), 3 * stop);
    EXPECT_DOUBLE_EQ(text.layout.x(8), 4 * stop);
    EXPECT_EQ(text.layout.offsetAt(0, 0.4 * stop), 0);
    EXPECT_EQ(text.layout.offsetAt(0, 0.6 * stop), 1);
}

TEST(TextLayout, TabsOfShapedLinesReachToTheSameStops) {
    const LaidOutText text(u"\té\tx");
    const double stop = text.layout.font().tabWidth();
    EXPECT_NEAR(text.layout.x(1), stop, 0.1);
    EXPECT_NEAR(text.layout.x(3), 2 * stop, 0.1);
}

TEST(TextLayout, AccentedLettersStandOnTheGridToo) {
    const LaidOutText text(u"camión ñandú");
    for (qint64 column = 0; column <= 12; ++column)
        EXPECT_NEAR(text.layout.x(column), static_cast<double>(column) * text.advance(), 0.25);
}

TEST(TextLayout, ACarriageReturnBeforeALineFeedIsNotShown) {
    const LaidOutText text(u"ab\r\ncd\r");
    EXPECT_EQ(text.layout.rowRange(0), (TextRange{0, 3}));
    EXPECT_DOUBLE_EQ(text.layout.width(0), 2 * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.x(3), 2 * text.advance());
    EXPECT_EQ(text.layout.offsetAt(0, 1e6), 2);
    EXPECT_GT(text.layout.width(1), 2.5 * text.advance());
}

TEST(TextLayout, SeparatorsAndControlsTakeARoomOfTheirOwnInTheirRow) {
    const std::u16string controls{u'a',      u'\u2028', u'\u2029', u'\u0085', u'\u0000', u'\u001B',
                                  u'\u007F', u'\uFEFF', u'\uFFFC', u'\u000B', u'\u000C', u'z'};
    const LaidOutText text(controls);
    EXPECT_EQ(text.layout.rowCount(), 1);
    for (qint64 offset = 0; offset < text.storage.length(); ++offset)
        EXPECT_GT(text.layout.x(offset + 1), text.layout.x(offset) + 1) << offset;
}

TEST(TextLayout, AMarkStandsOverItsLetter) {
    const LaidOutText text(u"xe\u0301y");
    EXPECT_NEAR(text.layout.x(3), 2 * text.advance(), 1);
    EXPECT_EQ(text.layout.offsetAt(0, 1.4 * text.advance()), 1);
    EXPECT_EQ(text.layout.offsetAt(0, 1.6 * text.advance()), 3);
}

TEST(TextLayout, AnEmojiWithJoinersIsEnteredNowhere) {
    const std::u16string family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467";
    const LaidOutText text(u"a" + family + u"b");
    const qint64 end = 1 + static_cast<qint64>(family.size());
    for (double x = 0; x < text.layout.width(0); x += 0.5) {
        const qint64 offset = text.layout.offsetAt(0, x);
        EXPECT_TRUE(offset <= 1 || offset >= end) << offset;
    }
}

TEST(TextLayout, HebrewRunsFromRightToLeftWithinTheLine) {
    const LaidOutText text(u"ab \u05E9\u05DC\u05D5\u05DD cd");
    EXPECT_GT(text.layout.x(4), text.layout.x(5));
    EXPECT_GT(text.layout.x(5), text.layout.x(6));
    EXPECT_GT(text.layout.x(8), text.layout.x(4));
}

TEST(TextLayout, ALongerLineOfLettersThatJoinStandsOnTheGrid) {
    std::u16string line = u"\u6F22a";
    while (static_cast<qint64>(line.size()) < TextLayout::joinedLength - 10)
        line += u"\u05E9\u05DC\u05D5\u05DD ";
    LaidOutText text(line);
    const double natural = text.layout.x(1);
    text.storage.replaceCharacters({text.storage.length(), 0}, QString(20, u'.'));
    EXPECT_DOUBLE_EQ(text.layout.x(1), 2 * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.width(0), static_cast<double>(text.storage.text().summary().cells()) * text.advance());
    text.layout.setComposition({0, QStringLiteral("xyz"), 2});
    EXPECT_NEAR(text.layout.caretX(0), 2 * text.advance(), 0.1);
    EXPECT_DOUBLE_EQ(text.layout.x(1), 2 * text.advance());
    text.layout.setComposition({});
    text.storage.replaceCharacters({text.storage.length() - 20, 20}, QStringView());
    EXPECT_DOUBLE_EQ(text.layout.x(1), natural);
}

TEST(TextLayout, ALineOfOthersKeepsItsNaturalWidthsUpToTheLongest) {
    std::u16string line = u"\u6F22";
    while (static_cast<qint64>(line.size()) < TextLayout::segmentLength)
        line += u"ñ";
    const LaidOutText text(line);
    const LaidOutText ideograph(u"\u6F22");
    EXPECT_DOUBLE_EQ(text.layout.x(1), ideograph.layout.width(0));
    EXPECT_NEAR(text.layout.width(0), text.layout.x(1) + static_cast<double>(line.size() - 1) * text.advance(), 20);
}

TEST(TextLayout, ACompositionMovesEmojiAside) {
    LaidOutText text(u"😀é😀");
    const double emoji = text.layout.x(2);
    text.layout.setComposition({2, QStringLiteral("漢字"), 1});
    const double before = text.layout.caretX(2);
    EXPECT_GT(before, emoji);
    EXPECT_NEAR(text.layout.x(3), emoji + 2 * (before - emoji) + text.advance(), 0.3);
    EXPECT_EQ(text.layout.offsetAt(0, text.layout.x(3)), 3);
}

TEST(TextLayout, ASelectionAcrossDirectionsHasSeveralStretches) {
    const LaidOutText text(u"ab \u05E9\u05DC\u05D5\u05DD cd");
    // The two letters before the Hebrew word, and its first two, which are at its right end.
    const auto stretches = text.layout.stretches(0, {0, 5}, 0, 1e6);
    ASSERT_THAT(stretches, SizeIs(2));
    EXPECT_NEAR(stretches[0].first, 0, 0.1);
    EXPECT_NEAR(stretches[0].second, 3 * text.advance(), 0.5);
    EXPECT_GT(stretches[1].first, stretches[0].second + 1);
    EXPECT_NEAR(stretches[1].second, text.layout.x(3), 30);
    // All of it is one.
    EXPECT_THAT(text.layout.stretches(0, {0, 10}, 0, 1e6), ElementsAre(Pair(0, DoubleNear(text.layout.width(0), 0.1))));
}

TEST(TextLayout, ASelectedLineFeedHasAStretchOfItsOwn) {
    const LaidOutText text(u"abc\ndef");
    const double advance = text.advance();
    EXPECT_THAT(text.layout.stretches(0, {1, 3}, 0, 1e6),
                ElementsAre(Pair(DoubleNear(advance, 0.01), DoubleNear(4 * advance, 0.01))));
    EXPECT_THAT(text.layout.stretches(0, {1, 2}, 0, 1e6),
                ElementsAre(Pair(DoubleNear(advance, 0.01), DoubleNear(3 * advance, 0.01))));
    EXPECT_THAT(text.layout.stretches(1, {4, 100}, 0, 1e6),
                ElementsAre(Pair(DoubleNear(0, 0.01), DoubleNear(3 * advance, 0.01))));
    EXPECT_THAT(text.layout.stretches(1, {0, 4}, 0, 1e6), SizeIs(0));
}

TEST(TextLayout, StretchesAreCutAtTheBounds) {
    const LaidOutText text(u"abcdefghij");
    EXPECT_THAT(text.layout.stretches(0, {0, 10}, 20, 30), ElementsAre(Pair(20, 30)));
    EXPECT_THAT(text.layout.stretches(0, {0, 2}, 60, 90), SizeIs(0));
}

class RoundTrips : public testing::TestWithParam<const char16_t*> {};

/// A place in bidirectional text may share its x with another; that is where a click may go instead.
void expectRoundTrips(const LaidOutText& text, TextRange range) {
    for (const qint64 place : text.clusterPlaces(range)) {
        const qint64 row = text.layout.rowOf(place);
        const double x = text.layout.x(place);
        const qint64 found = text.layout.offsetAt(row, x);
        EXPECT_TRUE(found == place || std::abs(text.layout.x(found) - x) < 0.02)
            << place << " at " << x << " is " << found << " at " << text.layout.x(found);
        EXPECT_EQ(boundaries::clusterStart(text.storage.text(), found), found);
    }
}

TEST_P(RoundTrips, APlaceInAShortLineIsFoundAgainByItsX) {
    const LaidOutText text(GetParam());
    expectRoundTrips(text, {0, text.storage.length()});
}

TEST_P(RoundTrips, APlaceInALongLineIsFoundAgainByItsX) {
    const std::u16string start = GetParam();
    const LaidOutText text(longLine(start));
    expectRoundTrips(text, {0, static_cast<qint64>(start.size())});
}

TEST_P(RoundTrips, EveryPlaceInALongLineCanBeReached) {
    const std::u16string start = GetParam();
    const LaidOutText text(longLine(start));
    const TextRange range{0, static_cast<qint64>(start.size())};
    std::vector<qint64> reached;
    const double end = text.layout.x(range.end());
    for (double x = 0; x <= end; x += 0.25)
        reached.push_back(text.layout.offsetAt(0, x));
    for (const qint64 place : text.clusterPlaces(range))
        EXPECT_THAT(reached, testing::Contains(place));
}

INSTANTIATE_TEST_SUITE_P(Scripts, RoundTrips,
                         testing::Values(u"{\"clave\": [1, 2, 3]}", u"camión, ñandú, œuvre",
                                         u"e\u0301 n\u0303 a\u0308\u0323 fin", u"漢字かな交じり文 한국어 fin",
                                         u"a😀b👨‍👩‍👧‍👦c🇪🇸d👍🏽e❤️f",
                                         u"Ελληνικά Привет мир", u"a\u2028b\u0001c\uFEFFd\u007Fe"));

class BidirectionalRoundTrips : public RoundTrips {};

TEST_P(BidirectionalRoundTrips, APlaceInAShortLineIsFoundAgainByItsX) {
    const LaidOutText text(GetParam());
    expectRoundTrips(text, {0, text.storage.length()});
}

TEST_P(BidirectionalRoundTrips, APlaceInALongLineIsFoundAgainByItsX) {
    const std::u16string start = GetParam();
    const LaidOutText text(longLine(start));
    expectRoundTrips(text, {0, static_cast<qint64>(start.size())});
}

INSTANTIATE_TEST_SUITE_P(Scripts, BidirectionalRoundTrips,
                         testing::Values(u"\"a\": \"שלום עולם\" (abc) 12", u"\"b\": \"مرحبا بالعالم\", 1",
                                         u"א1ב2 x ג"));

TEST(TextLayout, ACompositionMovesWhatFollowsAside) {
    LaidOutText text(u"abcd");
    text.layout.setComposition({2, QStringLiteral("xyz"), 1});
    const double advance = text.advance();
    EXPECT_NEAR(text.layout.x(2), 2 * advance, 0.1);
    EXPECT_NEAR(text.layout.caretX(2), 3 * advance, 0.1);
    EXPECT_NEAR(text.layout.x(3), 6 * advance, 0.1);
    EXPECT_NEAR(text.layout.width(0), 7 * advance, 0.1);
    EXPECT_EQ(text.layout.offsetAt(0, 1e6), 4);
    EXPECT_EQ(text.layout.offsetAt(0, 6 * advance), 3);
    text.layout.setComposition({});
    EXPECT_NEAR(text.layout.x(3), 3 * advance, 0.1);
    EXPECT_NEAR(text.layout.caretX(2), 2 * advance, 0.1);
}

TEST(TextLayout, ASelectionAfterACompositionDoesNotCoverIt) {
    LaidOutText text(u"abcd");
    text.layout.setComposition({2, QStringLiteral("xyz"), 3});
    const double advance = text.advance();
    EXPECT_THAT(text.layout.stretches(0, {2, 1}, 0, 1e6),
                ElementsAre(Pair(DoubleNear(5 * advance, 0.1), DoubleNear(6 * advance, 0.1))));
}

TEST(TextLayout, AnotherFontMovesEverything) {
    LaidOutText text(u"abcé\nabc");
    QFont large = monospacedFont(TextStyle::body);
    large.setPixelSize(40);
    (void)text.layout.x(4);
    text.layout.setFont(TextFont(large));
    EXPECT_GT(text.advance(), 20);
    EXPECT_NEAR(text.layout.x(4), 4 * text.advance(), 0.5);
    EXPECT_NEAR(text.layout.x(8), 3 * text.advance(), 0.01);
}

} // namespace
} // namespace quelm
