#include "Quelm/TextEngine/TextLayout.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace quelm {
namespace {

struct WrappedText : LaidOutText {
    WrappedText(std::u16string_view text, double columns) : LaidOutText(text) {
        layout.setWrapWidth((columns + 0.5) * advance());
    }

    std::u16string rowText(qint64 row) const { return storage.string(layout.rowRange(row)).toStdU16String(); }
};

/// Looks at every row, from the first to the last.
void expectRowsToPartition(const WrappedText& text, double width) {
    qint64 end = 0;
    for (qint64 row = 0; row < text.layout.rowCount(); ++row) {
        const TextRange range = text.layout.rowRange(row);
        const bool beginsLine = text.layout.firstRowOf(text.layout.lineOf(row)) == row;
        EXPECT_EQ(range.location, row > 0 && beginsLine ? end + 1 : end) << row;
        EXPECT_LE(text.layout.width(row), width + 0.01);
        EXPECT_EQ(boundaries::clusterStart(text.storage.text(), range.location), range.location);
        if (!range.isEmpty()) {
            EXPECT_EQ(text.layout.rowOf(range.location), row);
            EXPECT_EQ(text.layout.rowOf(range.end() - 1), row);
        }
        end = range.end();
    }
    EXPECT_EQ(end, text.storage.length());
}

TEST(TextLayoutWrapping, RowsBreakBetweenWords) {
    const WrappedText text(u"uno dos tres\ncuatro", 8);
    ASSERT_EQ(text.layout.rowCount(), 3);
    EXPECT_EQ(text.rowText(0), u"uno dos ");
    EXPECT_EQ(text.rowText(1), u"tres");
    EXPECT_EQ(text.rowText(2), u"cuatro");
    EXPECT_EQ(text.layout.lineOf(1), 0);
    EXPECT_EQ(text.layout.lineOf(2), 1);
    EXPECT_EQ(text.layout.firstRowOf(1), 2);
}

TEST(TextLayoutWrapping, AWordThatIsTooLongBreaksAnywhere) {
    const WrappedText text(u"abcdefghijklmno", 6);
    ASSERT_EQ(text.layout.rowCount(), 3);
    EXPECT_EQ(text.rowText(0), u"abcdef");
    EXPECT_EQ(text.rowText(2), u"mno");
}

TEST(TextLayoutWrapping, APlaceBetweenRowsBelongsToTheLaterOne) {
    const WrappedText text(u"abcdefghijklmno", 6);
    EXPECT_EQ(text.layout.rowOf(6), 1);
    EXPECT_EQ(text.layout.x(6), 0);
    EXPECT_EQ(text.layout.offsetAt(0, 1e6), 5);
    EXPECT_EQ(text.layout.offsetAt(2, 1e6), 15);
}

TEST(TextLayoutWrapping, ASelectionAcrossRowsHasAStretchInEach) {
    const WrappedText text(u"abcdefghijklmno", 6);
    const auto stretches = [&](qint64 row) { return text.layout.stretches(row, {4, 5}, 0, 1e6); };
    ASSERT_EQ(stretches(0).size(), 1U);
    EXPECT_NEAR(stretches(0)[0].first, 4 * text.advance(), 0.1);
    EXPECT_NEAR(stretches(0)[0].second, 6 * text.advance(), 0.1);
    ASSERT_EQ(stretches(1).size(), 1U);
    EXPECT_NEAR(stretches(1)[0].second, 3 * text.advance(), 0.1);
    EXPECT_TRUE(stretches(2).empty());
}

TEST(TextLayoutWrapping, RowsPartitionShortLines) {
    const WrappedText text(u"una línea con palabras y espacios\n\n漢字かな交じり文ですから長い\r\n"
                           u"שלום עולם ועוד מילים רבות\n\tuno\tdos\tтри\nabcdefghijklmnopqrstuvwxyz",
                           9);
    expectRowsToPartition(text, 9.5 * text.advance());
}

TEST(TextLayoutWrapping, RowsPartitionLongLines) {
    std::u16string line;
    while (line.size() < 6000)
        line += u"palabra 漢字 e\u0301 😀 👨‍👩‍👧‍👦 \u05E9\u05DC\u05D5\u05DD ";
    const WrappedText text(line, 40);
    EXPECT_GT(text.layout.rowCount(), 150);
    expectRowsToPartition(text, 40.5 * text.advance());
}

TEST(TextLayoutWrapping, PlacesInLongLinesAreFoundAgain) {
    std::u16string line;
    while (line.size() < 6000)
        line += u"palabra 漢字 e\u0301 😀 ";
    const WrappedText text(line, 31);
    for (const qint64 place : text.clusterPlaces({3000, 300})) {
        const qint64 row = text.layout.rowOf(place);
        EXPECT_EQ(text.layout.offsetAt(row, text.layout.x(place)), place);
    }
}

TEST(TextLayoutWrapping, AShortTextCountsItsRowsExactly) {
    // By its length the line would fit into four rows.
    const WrappedText text(u"abcdefg hijklmn opqrstu vwxyzab cdefghi", 10);
    EXPECT_EQ(text.layout.rowCount(), 5);
}

TEST(TextLayoutWrapping, ALookCorrectsAnEstimateAndMovesLaterRows) {
    std::u16string lines;
    while (static_cast<qint64>(lines.size()) <= TextLayout::exactLength)
        lines += u"abcdefg hijklmn opqrstu vwxyzab cdefghi\n";
    const WrappedText text(lines, 10);
    const qint64 lineCount = text.storage.lineCount();
    EXPECT_EQ(text.layout.rowCount(), 4 * (lineCount - 1) + 1);
    const qint64 second = text.layout.firstRowOf(1);
    EXPECT_EQ(second, 4);
    EXPECT_EQ(text.layout.rowRange(0), (TextRange{0, 8}));
    EXPECT_EQ(text.layout.firstRowOf(1), 5);
    EXPECT_EQ(text.layout.rowCount(), 4 * (lineCount - 1) + 2);
    for (qint64 line = 0; line < lineCount; ++line)
        (void)text.layout.rowOf(text.storage.lineStart(line));
    EXPECT_EQ(text.layout.rowCount(), 5 * (lineCount - 1) + 1);
}

TEST(TextLayoutWrapping, NotWrappingAnyMoreGivesARowALine) {
    WrappedText text(u"uno dos tres\ncuatro", 4);
    EXPECT_GT(text.layout.rowCount(), 2);
    text.layout.setWrapWidth(std::nullopt);
    EXPECT_EQ(text.layout.rowCount(), 2);
    EXPECT_EQ(text.rowText(0), u"uno dos tres");
}

TEST(TextLayoutWrapping, AWidthOfNothingStillHoldsACharacterARow) {
    WrappedText text(u"abc", 4);
    text.layout.setWrapWidth(0);
    EXPECT_EQ(text.layout.rowCount(), 3);
    expectRowsToPartition(text, text.advance());
}

TEST(TextLayoutWrapping, ACompositionMayMakeARowMore) {
    WrappedText text(u"abcdef\nx", 6);
    EXPECT_EQ(text.layout.rowCount(), 2);
    text.layout.setComposition({6, QStringLiteral("ghi"), 3});
    EXPECT_EQ(text.layout.rowCount(), 3);
    EXPECT_EQ(text.layout.caretRow(6), 1);
    EXPECT_NEAR(text.layout.caretX(6), 3 * text.advance(), 0.1);
    EXPECT_EQ(text.layout.rowOf(7), 2);
    text.layout.setComposition({});
    EXPECT_EQ(text.layout.rowCount(), 2);
}

TEST(TextLayoutWrapping, OneEndlessLineIsCountedWithoutBeingLaidOut) {
    const WrappedText text(std::u16string(2'000'000, u'a'), 100);
    const qint64 perRow = text.layout.rowRange(0).length;
    EXPECT_GT(perRow, 80);
    EXPECT_LE(perRow, 100);
    EXPECT_EQ(text.layout.rowCount(), (2'000'000 + perRow - 1) / perRow);
    EXPECT_EQ(text.layout.rowRange(10'000), (TextRange{10'000 * perRow, perRow}));
    EXPECT_EQ(text.layout.rowOf(15'000 * perRow + 50), 15'000);
    EXPECT_LE(text.layout.cachedPartCount(), 4);
}

TEST(TextLayoutWrapping, RowsOfAnEndlessLineBreakBetweenWords) {
    std::u16string line;
    while (line.size() < 20'000)
        line += u"unas cuantas palabras y más, ";
    const WrappedText text(line, 40);
    for (qint64 row = 0; row + 1 < text.layout.rowCount(); ++row)
        ASSERT_TRUE(text.rowText(row).ends_with(u' ')) << row;
}

TEST(TextLayoutWrapping, WordsThatAreShapedAreCutWhereTheirPlacesAreFoundAgain) {
    for (const std::u16string_view word :
         {u"नमस्तेक्षत्रिय", u"สวัสดีชาวโลกน้ำ", u"مرحبابالعالم", u"שלוםעולם", u"abcdefghijklm"}) {
        std::u16string line;
        for (int times = 0; times < 10; ++times)
            line += word;
        for (const double columns : {1.0, 3.0, 7.0, 20.0}) {
            const WrappedText text(line, columns);
            expectRowsToPartition(text, std::numeric_limits<double>::max());
            for (const qint64 place : text.clusterPlaces({0, text.storage.length()})) {
                const qint64 row = text.layout.rowOf(place);
                EXPECT_LE(text.layout.x(place), text.layout.width(row) + 0.01);
                EXPECT_NEAR(text.layout.x(text.layout.offsetAt(row, text.layout.x(place))), text.layout.x(place), 0.01);
            }
        }
    }
}

TEST(TextLayoutWrapping, AClusterOfManyMarksMakesNoRowsOfNothing) {
    const WrappedText text(u"a" + std::u16string(10'000, u'\u0301') + u"b", 20);
    qint64 end = 0;
    for (qint64 row = 0; row < text.layout.rowCount(); ++row) {
        ASSERT_EQ(text.layout.rowRange(row).location, end);
        ASSERT_FALSE(text.layout.rowRange(row).isEmpty()) << row;
        end = text.layout.rowRange(row).end();
    }
    EXPECT_EQ(end, text.storage.length());
}

TEST(TextLayoutWrapping, PlacesLieInTheirRowsWhateverSteersDirections) {
    std::u16string line;
    for (const char16_t control : std::u16string_view(u"\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069"))
        line += std::u16string(u"abc ") + control + u"def שלום " + control + u" 123 ";
    const WrappedText text(line, 9);
    expectRowsToPartition(text, 9.5 * text.advance());
    for (const qint64 place : text.clusterPlaces({0, text.storage.length()})) {
        EXPECT_GE(text.layout.x(place), 0);
        EXPECT_LE(text.layout.x(place), 9.5 * text.advance() + 0.01) << place;
    }
}

TEST(TextLayoutWrapping, ATabReachesToAStopOfItsRow) {
    const WrappedText text(u"abcdefghi\tx", 6);
    ASSERT_EQ(text.rowText(1), u"ghi\tx");
    EXPECT_NEAR(text.layout.x(10), 4 * text.advance(), 0.1);
}

TEST(TextLayoutWrapping, ALineThatIsEditedWhileItIsComposedInHasTheRowsOfBoth) {
    WrappedText text(u"abc", 6);
    text.layout.setComposition({3, QStringLiteral("defghi"), 6});
    EXPECT_EQ(text.layout.rowCount(), 2);
    text.storage.replaceCharacters({0, 1}, u"x");
    EXPECT_EQ(text.layout.rowCount(), 2);
    text.layout.setWrapWidth(20 * text.advance());
    EXPECT_EQ(text.layout.rowCount(), 1);
    text.layout.setWrapWidth(4.5 * text.advance());
    EXPECT_EQ(text.layout.rowCount(), 3);
}

} // namespace
} // namespace quelm
