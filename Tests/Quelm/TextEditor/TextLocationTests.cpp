#include "Quelm/TextEditor/TextLocation.h"
#include "TextCore/TextRope.h"

#include <QString>

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace quelm {
namespace {

constexpr qint64 least = std::numeric_limits<qint64>::min();
constexpr qint64 most = std::numeric_limits<qint64>::max();

struct Place {
    const char* text;
    qint64 line;
    qint64 column;
    qint64 offset;
};

TEST(TextLocation, IsThePlaceOfTheColumnInTheLine) {
    const Place places[] = {
        {"a\nbb\ncc", 1, 1, 0}, {"a\nbb\ncc", 2, 1, 2},   {"a\nbb\ncc", 2, 2, 3},
        {"a\nbb\ncc", 2, 3, 4}, {"a\nbb\ncc", 3, 1, 5},   {"a\nbb\ncc", 3, 3, 7},
        {"\n\n", 2, 1, 1},      {"a\rb\nc", 2, 1, 4}, // only a line feed ends a line
        {"a\rb\nc", 1, 4, 3},   {"a\u2028b\nc", 2, 1, 4},
    };
    for (const Place& place : places)
        EXPECT_EQ(TextLocation(place.line, place.column).offset(TextRope(SharedText(place.text))), place.offset)
            << place.text << " at " << place.line << ":" << place.column;
}

TEST(TextLocation, WhatIsBeforeTheFirstLineOrColumnIsThat) {
    const TextRope text(SharedText("a\nbb\ncc"));
    for (const qint64 line : {qint64{1}, qint64{0}, qint64{-1}, qint64{-7}, least}) {
        EXPECT_EQ(TextLocation(line, 1).offset(text), 0);
        EXPECT_EQ(TextLocation(line, 2).offset(text), 1);
    }
    for (const qint64 column : {qint64{1}, qint64{0}, qint64{-1}, least})
        EXPECT_EQ(TextLocation(2, column).offset(text), 2);
}

TEST(TextLocation, ALinePastTheEndIsTheLastLine) {
    const TextRope text(SharedText("a\nbb\ncc"));
    for (const qint64 line : {qint64{4}, qint64{5}, qint64{1'000}, most}) {
        EXPECT_EQ(TextLocation(line, 1).offset(text), 5);
        EXPECT_EQ(TextLocation(line, 2).offset(text), 6);
    }
    const TextRope ended(SharedText("a\nbb\n"));
    EXPECT_EQ(TextLocation(3, 1).offset(ended), 5);
    EXPECT_EQ(TextLocation(9, 9).offset(ended), 5) << "after a last line feed there is an empty line";
}

TEST(TextLocation, AColumnPastTheEndIsThePlaceAfterTheLineFeed) {
    const TextRope text(SharedText("a\nbb\ncc"));
    EXPECT_EQ(TextLocation(1, 3).offset(text), 2);
    for (const qint64 column : {qint64{9}, most})
        EXPECT_EQ(TextLocation(1, column).offset(text), 2);
    EXPECT_EQ(TextLocation(2, 9).offset(text), 5);
    EXPECT_EQ(TextLocation(3, 9).offset(text), 7);
}

TEST(TextLocation, AnEmptyTextHasOnePlace) {
    for (const qint64 line : {least, qint64{0}, qint64{1}, qint64{2}, most})
        for (const qint64 column : {least, qint64{0}, qint64{1}, qint64{2}, most})
            EXPECT_EQ(TextLocation(line, column).offset(TextRope()), 0);
}

TEST(TextLocation, ColumnsCountWhatAUserCallsACharacter) {
    // The line begins at offset 1. After it: a man, e with an accent of its own, a flag, a family, and x.
    const TextRope text(SharedText("\n\U0001F468e\u0301\U0001F1EA\U0001F1F8\U0001F469\u200D\U0001F467x\n"));
    const qint64 offsets[] = {1, 3, 5, 9, 14, 15, 16, 16};
    for (qint64 column = 1; column <= 8; ++column)
        EXPECT_EQ(TextLocation(2, column).offset(text), offsets[column - 1]) << "column " << column;
}

TEST(TextLocation, ACarriageReturnBeforeTheLineFeedIsOneColumnWithIt) {
    const TextRope text(SharedText("ab\r\ncd\r\n"));
    EXPECT_EQ(TextLocation(1, 3).offset(text), 2);
    EXPECT_EQ(TextLocation(1, 4).offset(text), 4);
    EXPECT_EQ(TextLocation(2, 3).offset(text), 6);
    EXPECT_EQ(TextLocation(2, 4).offset(text), 8);
}

TEST(TextLocation, IsFoundInALineOfManyMegabytes) {
    const std::size_t half = 20'000'000;
    const TextRope text(
        SharedText("[\n" + std::string(half, 'x') + "\u00F1\U0001F600" + std::string(half, 'y') + "\n]"));
    const auto middle = static_cast<qint64>(half);
    EXPECT_EQ(TextLocation(2, middle + 1).offset(text), 2 + middle);
    EXPECT_EQ(TextLocation(2, middle + 2).offset(text), 2 + middle + 1);
    EXPECT_EQ(TextLocation(2, middle + 3).offset(text), 2 + middle + 3);
    EXPECT_EQ(TextLocation(2, 2 * middle).offset(text), 2 + 2 * middle);
    EXPECT_EQ(TextLocation(2, most).offset(text), 2 + 2 * middle + 4);
    EXPECT_EQ(TextLocation(3, 1).offset(text), 2 + 2 * middle + 4);
}

TEST(TextLocation, TakesLongFarIntoALongLineThatIsNotASCIIOnly) {
    const std::string ascii(2 << 20, 'x');
    const TextRope text(
        SharedText("\u00F1\n" + ascii + "\r\n" + ascii + "\u00F1\n" + ascii + "\r" + ascii + "\r\n\u00F1"));
    EXPECT_FALSE(TextLocation(1, most).takesLong(text));
    EXPECT_FALSE(TextLocation(2, most).takesLong(text));
    EXPECT_TRUE(TextLocation(3, most).takesLong(text));
    EXPECT_FALSE(TextLocation(3, 1).takesLong(text));
    EXPECT_TRUE(TextLocation(4, most).takesLong(text)) << "carriage returns are clusters of one kind or the other";
    EXPECT_FALSE(TextLocation(most, most).takesLong(text));
    EXPECT_FALSE(TextLocation(1, most).takesLong(TextRope()));
}

TEST(TextLocation, EveryLocationMadeIsAValueOfItsOwn) {
    const TextLocation one(3, 4);
    const TextLocation other(3, 4);
    EXPECT_NE(one, other);
    EXPECT_FALSE(one.id.isNull());

    TextLocation copy = one;
    EXPECT_EQ(copy, one);
    copy.line = 5;
    EXPECT_NE(copy, one);
    copy = one;
    copy.column = 5;
    EXPECT_NE(copy, one);
}

} // namespace
} // namespace quelm
