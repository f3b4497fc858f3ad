#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/Graphemes.h"
#include "TextCore/RopeGraphemes.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <stop_token>
#include <string>

namespace quelm {
namespace {

using test::joined;
using test::randomBelow;
using test::repeated;

constexpr std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();

struct Alphabet {
    const char* name;
    std::u32string_view characters;
};

constexpr Alphabet alphabets[] = {
    {"ASCII", U"ab{}\": ,19"},
    {"LineEnds", U"ab\r\n\r\n\u2028"},
    {"Latin", U"abcdefgh\n\u00E9\u00F1"},
    {"CombiningMarks", U"ae\u00E9\u0301\u0327\u20DD"},
    {"Hangul", U"a\u1100\u1161\u11A8\uAC00\uAC01\u0301"},
    {"RegionalIndicators", U"a\U0001F1EA\U0001F1F8\U0001F1E6\U0001F1FF"},
    {"Emoji", U"a#\uFE0F\u20E3\u200D\U0001F468\U0001F469\U0001F3FD\u2764\U0001F600"},
    {"Devanagari", U"a \u0915\u0937\u0924\u093F\u093C\u094D\u200D\u200C"},
    {"Everything", U"ab\r\n\u00E9\u0301\u1100\u1161\uAC00\U0001F1EA\U0001F469\u200D\U0001F3FD\u0600\u0915\u094D\u4E2D"},
};

/// A text and a rope of it, made of odd pieces by random edits.
struct EditedText {
    std::string bytes;
    TextRope rope;

    std::size_t randomPlace(std::mt19937& random) const {
        std::size_t place = randomBelow(random, bytes.size() + 1);
        while (place < bytes.size() && (static_cast<unsigned char>(bytes[place]) & 0xC0) == 0x80)
            ++place;
        return place;
    }

    ByteRange randomRange(std::mt19937& random) const {
        const std::size_t one = randomPlace(random);
        const std::size_t other = randomPlace(random);
        return ByteRange::between(static_cast<std::int64_t>(std::min(one, other)),
                                  static_cast<std::int64_t>(std::max(one, other)));
    }

    void replace(ByteRange range, const std::string& piece) {
        bytes.replace(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length), piece);
        rope = rope.replacing(range, TextRope(SharedText(piece)));
    }

    std::string_view view(ByteRange range) const {
        return std::string_view(bytes).substr(static_cast<std::size_t>(range.location),
                                              static_cast<std::size_t>(range.length));
    }
};

void expectSameClusters(const EditedText& text, ByteRange range, std::int64_t clusters) {
    const std::string_view stretch = text.view(range);
    ASSERT_EQ(clusterCount(text.rope, range), graphemes::count(stretch)) << testing::PrintToString(stretch);
    const std::int64_t expected = range.location + std::ssize(graphemes::prefix(stretch, clusters));
    ASSERT_EQ(offsetAfterClusters(text.rope, range, clusters), expected)
        << clusters << " clusters of " << testing::PrintToString(stretch);
}

class RopeGraphemesOfTest : public testing::TestWithParam<Alphabet> {};

INSTANTIATE_TEST_SUITE_P(RandomTextOf, RopeGraphemesOfTest, testing::ValuesIn(alphabets),
                         [](const auto& alphabet) { return std::string(alphabet.param.name); });

TEST_P(RopeGraphemesOfTest, AgreesWithTheContiguousTextAfterRandomEdits) {
    std::mt19937 random(1);
    for (int round = 0; round < 20; ++round) {
        EditedText text;
        for (int edit = 0; edit < 60; ++edit) {
            const std::size_t place = text.randomPlace(random);
            const auto location = static_cast<std::int64_t>(place);
            const std::string piece = test::randomText(random, GetParam().characters, randomBelow(random, 200));
            text.replace({location, 0}, piece);
            if (randomBelow(random, 3) == 0) {
                const ByteRange removed = text.randomRange(random);
                if (removed.length < 1'000)
                    text.replace(removed, "");
            }
            const ByteRange range = text.randomRange(random);
            expectSameClusters(text, range, static_cast<std::int64_t>(randomBelow(random, 20)));
            expectSameClusters(text, range, static_cast<std::int64_t>(randomBelow(random, text.bytes.size() + 2)));
        }
    }
}

TEST_P(RopeGraphemesOfTest, AgreesWithTheContiguousTextWhereWindowsAndSkipsMeet) {
    std::mt19937 random(2);
    for (int round = 0; round < 5; ++round) {
        EditedText text;
        while (text.bytes.size() < 300'000) {
            const auto end = static_cast<std::int64_t>(text.bytes.size());
            text.replace({end, 0}, std::string(randomBelow(random, 2) * randomBelow(random, 40'000), 'x'));
            const auto nextEnd = static_cast<std::int64_t>(text.bytes.size());
            text.replace({nextEnd, 0}, test::randomText(random, GetParam().characters,
                                                        randomBelow(random, 2) ? randomBelow(random, 20'000) : 3));
        }
        for (int sample = 0; sample < 8; ++sample) {
            const ByteRange range = text.randomRange(random);
            expectSameClusters(text, range, static_cast<std::int64_t>(randomBelow(random, 100)));
            expectSameClusters(text, range, static_cast<std::int64_t>(randomBelow(random, text.bytes.size())));
        }
    }
}

TEST(RopeGraphemes, AnEmptyStretchHasNoClusters) {
    EXPECT_EQ(clusterCount(TextRope(), {}), 0);
    EXPECT_EQ(offsetAfterClusters(TextRope(), {}, 0), 0);
    EXPECT_EQ(offsetAfterClusters(TextRope(), {}, 7), 0);
    const TextRope text(SharedText("abc"));
    EXPECT_EQ(clusterCount(text, {2, 0}), 0);
    EXPECT_EQ(offsetAfterClusters(text, {2, 0}, 1), 2);
}

TEST(RopeGraphemes, AStretchIsTakenByItself) {
    const TextRope text(SharedText("ae\u0301\r\nb"));
    EXPECT_EQ(clusterCount(text, {0, 7}), 4);
    EXPECT_EQ(clusterCount(text, {2, 2}), 1) << "the mark alone";
    EXPECT_EQ(clusterCount(text, {0, 2}), 2);
    EXPECT_EQ(clusterCount(text, {5, 2}), 2) << "the line feed without the carriage return";
    EXPECT_EQ(offsetAfterClusters(text, {1, 5}, 1), 4);
    EXPECT_EQ(offsetAfterClusters(text, {1, 4}, 9), 5);
}

TEST(RopeGraphemes, TheLastASCIICharacterBeforeAMarkBelongsToIt) {
    for (const std::size_t length : {1, 2, 255, 256, 257, 4'095, 4'096, 4'097, 8'191, 8'192, 32'768, 100'000}) {
        const auto count = static_cast<std::int64_t>(length);
        EditedText text;
        text.replace({}, std::string(length, 'x') + "\u0301" + std::string(length, 'y'));
        expectSameClusters(text, {0, std::ssize(text.bytes)}, count);
        EXPECT_EQ(offsetAfterClusters(text.rope, {0, std::ssize(text.bytes)}, count - 1), count - 1);
        EXPECT_EQ(offsetAfterClusters(text.rope, {0, std::ssize(text.bytes)}, count), count + 2);
    }
}

TEST(RopeGraphemes, ASurrogatePairAtTheEdgeOfASkipIsNoASCII) {
    for (const std::size_t length : {0, 1, 254, 255, 256, 4'094, 4'095, 4'096}) {
        EditedText text;
        text.replace({}, std::string(length, 'x') + "\U0001F600\u0301" + std::string(length, 'y') + "\U0001F600");
        for (const std::size_t clusters : {length, length + 1, length + 2, 2 * length + 1, 2 * length + 2})
            expectSameClusters(text, {0, std::ssize(text.bytes)}, static_cast<std::int64_t>(clusters));
    }
}

TEST(RopeGraphemes, AClusterMayBeLongerThanAWindow) {
    for (const std::string& cluster :
         {"a" + repeated("\u0301", 40'000), repeated("\U0001F469\u200D", 30'000) + "\U0001F469"}) {
        EditedText text;
        text.replace({}, joined({"xy", cluster, "z", cluster, repeated("\U0001F1EA", 7), "\n"}));
        const ByteRange all{0, std::ssize(text.bytes)};
        EXPECT_EQ(clusterCount(text.rope, all), 10);
        for (std::int64_t clusters = 0; clusters <= 11; ++clusters)
            expectSameClusters(text, all, clusters);
    }
}

TEST(RopeGraphemes, FlagsArePairedFromTheFirstOneAcrossWindows) {
    for (const std::size_t indicators : {2, 255, 256, 257, 40'001}) {
        EditedText text;
        text.replace({}, repeated("\U0001F1EA", indicators));
        const ByteRange all{0, std::ssize(text.bytes)};
        EXPECT_EQ(clusterCount(text.rope, all), static_cast<std::int64_t>((indicators + 1) / 2));
        for (const std::int64_t clusters : {1, 100, 127, 128, 129, 20'000, 20'001})
            expectSameClusters(text, all, clusters);
    }
}

TEST(RopeGraphemes, CRLFIsOneClusterWhereverPiecesMeet) {
    EditedText text;
    for (int turn = 0; turn < 5'000; ++turn) {
        text.replace({std::ssize(text.bytes), 0}, "x\r");
        text.replace({std::ssize(text.bytes), 0}, "\ny\r");
    }
    const ByteRange all{0, std::ssize(text.bytes)};
    EXPECT_EQ(clusterCount(text.rope, all), 20'000);
    for (const std::int64_t clusters : {1, 2, 3, 4, 5, 6, 9'999, 10'000, 19'999, 20'000, 20'001})
        expectSameClusters(text, all, clusters);
}

TEST(RopeGraphemes, ALongASCIILineIsSkipped) {
    constexpr std::int64_t length = 100'000'000;
    const TextRope plain(SharedText(std::string(static_cast<std::size_t>(length), 'x')));
    EXPECT_EQ(clusterCount(plain, {0, length}), length);
    EXPECT_EQ(offsetAfterClusters(plain, {1, length - 1}, length / 2), length / 2 + 1);
    EXPECT_EQ(offsetAfterClusters(plain, {0, length}, noLimit), length);

    const TextRope text = plain.replacing({length / 2, 0}, TextRope(SharedText("\u0301\U0001F600")));
    EXPECT_EQ(clusterCount(text, {0, length + 6}), length + 1);
    EXPECT_EQ(offsetAfterClusters(text, {0, length + 6}, length / 2), length / 2 + 2);
    EXPECT_EQ(offsetAfterClusters(text, {0, length + 6}, length / 2 + 2), length / 2 + 7);
    const auto addedBefore = [](std::int64_t column) {
        constexpr std::int64_t marked = length / 2;
        return column < marked ? 0 : column == marked ? 2 : 5;
    };
    // As many questions as no walk through the line would answer in the time that a test has.
    for (std::int64_t column = 0; column < length; column += 10'000)
        ASSERT_EQ(offsetAfterClusters(text, {0, length + 6}, column), column + addedBefore(column));
}

TEST(RopeGraphemes, TheWalkEndsSoonWhenItIsAskedToStop) {
    const std::string bytes = repeated("\u00F1", 1'000'000);
    const TextRope text{SharedText(bytes)};
    std::stop_source source;
    EXPECT_EQ(offsetAfterClusters(text, {0, text.byteCount()}, 999'999, source.get_token()), 1'999'998);
    source.request_stop();
    EXPECT_LT(offsetAfterClusters(text, {0, text.byteCount()}, 999'999, source.get_token()), 1'000'000);
}

TEST(RopeGraphemesDeathTest, ANegativeNumberOfClustersIsAProgrammingError) {
    EXPECT_DEATH(offsetAfterClusters(TextRope(), {}, -1), "not negative");
}

} // namespace
} // namespace quelm
