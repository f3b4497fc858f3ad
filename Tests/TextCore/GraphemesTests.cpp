#include "Tests/TextCore/Support/GuardedText.h"
#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/Graphemes.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace quelm {
namespace {

using test::joined;
using test::randomBelow;
using test::repeated;

/// The ends of the clusters of a whole text in one pass of ICU.
std::vector<std::size_t> boundariesByICU(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    UBreakIterator* iterator = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
    UText access = UTEXT_INITIALIZER;
    utext_openUTF8(&access, text.data(), static_cast<std::int64_t>(text.size()), &status);
    ubrk_setUText(iterator, &access, &status);
    EXPECT_TRUE(U_SUCCESS(status));
    std::vector<std::size_t> boundaries;
    for (std::int32_t end = ubrk_next(iterator); end != UBRK_DONE; end = ubrk_next(iterator))
        boundaries.push_back(static_cast<std::size_t>(end));
    utext_close(&access);
    ubrk_close(iterator);
    return boundaries;
}

constexpr std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();

/// Checks the count, and the prefixes of `sampled` numbers of clusters and of all that are near the end.
void expectBoundariesOfICU(std::string_view text, std::mt19937& random, std::size_t sampled) {
    const std::vector<std::size_t> boundaries = boundariesByICU(text);
    ASSERT_EQ(graphemes::count(text), std::ssize(boundaries)) << testing::PrintToString(text);
    ASSERT_EQ(graphemes::prefix(text, noLimit), text);
    ASSERT_EQ(graphemes::prefix(text, std::ssize(boundaries) + 1), text);
    for (std::size_t sample = 0; sample < sampled && !boundaries.empty(); ++sample) {
        const std::size_t clusters = sample < 3 && sample < boundaries.size()
                                         ? boundaries.size() - sample
                                         : 1 + randomBelow(random, boundaries.size());
        ASSERT_EQ(graphemes::prefix(text, static_cast<std::int64_t>(clusters)).size(), boundaries[clusters - 1])
            << clusters << " clusters of " << testing::PrintToString(text);
    }
}

struct Alphabet {
    const char* name;
    std::u32string_view characters;
};

constexpr Alphabet alphabets[] = {
    {"ASCII", U"ab \t\n\r\r\n\u0000\u007F"},
    {"Latin", U"a\r\n\u00E9\u00F1\u00AD\u0085\u02FF\u0250z"},
    {"CombiningMarks", U"ae\r\n\u00E9\u00F1\u0300\u0301\u0327\u0308\u20DD\u00AD"},
    {"Hangul", U"a \u1100\u1112\uA960\u1160\u1175\uD7B0\u11A8\u11C2\uD7CB\uAC00\uAC01\uD7A3\u0301"},
    {"RegionalIndicators", U"a\n\U0001F1EA\U0001F1F8\U0001F1E6\U0001F1FF\u0301\u200D"},
    {"Emoji", U"a#\uFE0F\u20E3\u200D\U0001F468\U0001F469\U0001F3FD\U0001F3F3\u2764\u00A9\U0001F600\u0301"},
    {"Prepend", U"ab1\n\u0600\u06DD\u0915\U000110BD\U000110CD\U000111C2\u0301\u0F39"},
    {"Indic", U"a "
              U"\u0915\u0937\u0924\u093F\u093C\u094D\u200D\u200C\u09CD\u0995\u0D4D\u0D15\u0B4D\u0B15\u0C4D\u0C15\u0ACD"
              U"\u0A95\u0BCD\u0B95"},
    {"Controls", U"a\r\n\u0000\u0085\u2028\u2029\u200B\u200E\uFEFF\u0301\u200D\U000E0001\U000E0020"},
    {"PlainLetters", U"a\u00F1\u0436\u4E2D\u6587\u3042\uFF01\uAC00\U00020000\U0001F600\uFFFD"},
    {"Everything", U"ab\r\n\u00E9\u0301\u0300\u1100\u1161\u11A8\uAC00\uAC01\U0001F1EA\U0001F1F8\U0001F469\u200D"
                   U"\U0001F4BB\U0001F3FD\u0600\U000110BD\u0915\u094D\u093F\u0E33\u4E2D\uFEFF\u00AD"},
};

class GraphemesOfTest : public testing::TestWithParam<Alphabet> {};

INSTANTIATE_TEST_SUITE_P(RandomTextOf, GraphemesOfTest, testing::ValuesIn(alphabets),
                         [](const auto& alphabet) { return std::string(alphabet.param.name); });

TEST_P(GraphemesOfTest, AgreesWithOnePassOfICU) {
    std::mt19937 random(1);
    for (int turn = 0; turn < 3'000; ++turn)
        expectBoundariesOfICU(test::randomText(random, GetParam().characters, randomBelow(random, 40)), random, 12);
    for (int turn = 0; turn < 30; ++turn)
        expectBoundariesOfICU(test::randomText(random, GetParam().characters, 4'000), random, 30);
}

TEST_P(GraphemesOfTest, AgreesWithOnePassOfICUAmongLongPlainRuns) {
    std::mt19937 random(2);
    for (int turn = 0; turn < 400; ++turn) {
        std::string text;
        for (std::size_t runs = randomBelow(random, 8); runs > 0; --runs) {
            text += std::string(randomBelow(random, 3) * randomBelow(random, 100), 'x');
            text += test::randomText(random, GetParam().characters, randomBelow(random, 30));
            text += repeated("\u4E2D", randomBelow(random, 2) * randomBelow(random, 40));
            text += test::randomText(random, U"xy\r\n\u00F1", randomBelow(random, 2) * randomBelow(random, 200));
        }
        expectBoundariesOfICU(text, random, 20);
    }
}

TEST(Graphemes, CountsWhatAUserCallsACharacter) {
    EXPECT_EQ(graphemes::count(""), 0);
    EXPECT_EQ(graphemes::count("[\"é\", "), 6);
    EXPECT_EQ(graphemes::count("e\u0301"), 1);
    EXPECT_EQ(graphemes::count("\xEF\xBB\xBF{}"), 3) << "a byte-order mark is one character";
    EXPECT_EQ(graphemes::count("\U0001F469\u200D\U0001F469\u200D\U0001F467"), 1);
    EXPECT_EQ(graphemes::count("\U0001F1EA\U0001F1F8\U0001F1EB\U0001F1F7"), 2);
    EXPECT_EQ(graphemes::count("\u1112\u1161\u11AB\uAE00"), 2);
}

TEST(Graphemes, CRLFIsOneClusterAndOtherPairsOfASCIIAreTwo) {
    EXPECT_EQ(graphemes::count("\r\n"), 1);
    EXPECT_EQ(graphemes::count("\n\r"), 2);
    EXPECT_EQ(graphemes::count("\r\r\n\n"), 3);
    EXPECT_EQ(graphemes::prefix("a\r\nb", 2), "a\r\n");
    EXPECT_EQ(graphemes::prefix("\r\n\r\n", 1), "\r\n");
    for (char first = 0; first >= 0 && first < 127; ++first)
        for (char second = 0; second >= 0 && second < 127; ++second)
            ASSERT_EQ(graphemes::count(std::string{first, second}), first == '\r' && second == '\n' ? 1 : 2);
}

TEST(Graphemes, EveryPairOfNeighboursWithAMarkBetweenOrNotAgreesWithICU) {
    const std::u32string_view characters = alphabets[std::size(alphabets) - 1].characters;
    std::mt19937 random(3);
    for (const char32_t first : characters)
        for (const char32_t second : characters)
            for (const char32_t third : characters)
                expectBoundariesOfICU(test::utf8Of(std::u32string{first, second, third}), random, 3);
}

TEST(Graphemes, EveryCharacterJoinsPlainNeighboursAsInICU) {
    std::string text;
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (scalar == 0xD800)
            scalar = 0xE000;
        text = test::utf8Of(std::u32string{U'x', scalar, U'\u4E2D', scalar, scalar, U'x'});
        ASSERT_EQ(graphemes::count(text), std::ssize(boundariesByICU(text)))
            << std::hex << static_cast<unsigned>(scalar);
        if (scalar >= 0x30000 && scalar < 0xE0000) // planes without assigned characters
            scalar += 0xFD;
    }
}

TEST(Graphemes, AClusterMayBeLongerThanAnyPieceThatICUIsGiven) {
    std::mt19937 random(4);
    const std::string clusters[] = {
        "a" + repeated("\u0301", 200'000),
        repeated("\u0600", 5'000) + "a",
        repeated("\u1100", 5'000) + repeated("\u1161", 5'000) + repeated("\u11A8", 5'000),
        repeated("\U0001F469\u200D", 20'000) + "\U0001F469",
        repeated("\u0915\u094D", 10'000) + "\u0915",
    };
    for (const std::string& cluster : clusters) {
        ASSERT_EQ(boundariesByICU(cluster).size(), 1u);
        expectBoundariesOfICU(cluster, random, 1);
        expectBoundariesOfICU(joined({"x\n", cluster, "b", cluster, repeated("\U0001F1EA", 7), cluster}), random, 20);
    }
}

TEST(Graphemes, PairsOfRegionalIndicatorsAreCountedFromTheFirstOne) {
    std::mt19937 random(5);
    for (const std::size_t flags : {1, 2, 3, 255, 256, 257, 20'001}) {
        const std::string row = repeated("\U0001F1EA", flags);
        EXPECT_EQ(graphemes::count(row), static_cast<std::int64_t>((flags + 1) / 2));
        expectBoundariesOfICU(joined({"a", row, "b", row}), random, 20);
    }
}

TEST(Graphemes, ALongRunOfLatinTextIsCountedWhateverPlaceItsBlocksEndAt) {
    std::mt19937 random(6);
    for (std::size_t shift = 0; shift < 4; ++shift) {
        const std::string start = std::string(shift, 'x');
        expectBoundariesOfICU(start + repeated("\u00F1", 70'000), random, 20);
        expectBoundariesOfICU(start + repeated("\r\n", 70'000), random, 20);
        expectBoundariesOfICU(start + repeated("\u00F1\r\n", 50'000) + "\u0301", random, 20);
    }
}

TEST(Graphemes, TheASCIICharacterBesideOtherTextMayBelongToIt) {
    for (const std::size_t before : {0, 1, 2, 14, 15, 16, 17, 63, 64, 65, 255, 256, 65'534, 65'535, 65'536, 65'537}) {
        const std::string run(before, 'x');
        const auto length = static_cast<std::int64_t>(before);
        EXPECT_EQ(graphemes::count(run + "e\u0301"), length + 1);
        EXPECT_EQ(graphemes::count(joined({run, "\u0600e", run})), 2 * length + 1);
        EXPECT_EQ(graphemes::count(joined({run, "\r\n\u0301", run})), 2 * length + 2);
        EXPECT_EQ(graphemes::count(run + "\r\u0301\n"), length + 3);
        EXPECT_EQ(graphemes::prefix(run + "e\u0301o", length + 1), run + "e\u0301");
        EXPECT_EQ(graphemes::prefix(joined({run, "\r\n", run}), length + 1), run + "\r\n");
    }
}

TEST(Graphemes, APrefixOfNoClustersIsEmptyAndALongOneIsTheText) {
    EXPECT_EQ(graphemes::prefix("", 0), "");
    EXPECT_EQ(graphemes::prefix("", 5), "");
    EXPECT_EQ(graphemes::prefix("abc", 0), "");
    EXPECT_EQ(graphemes::prefix("abc", 2), "ab");
    EXPECT_EQ(graphemes::prefix("abc", 3), "abc");
    EXPECT_EQ(graphemes::prefix("abc", noLimit), "abc");
}

TEST(Graphemes, APrefixIsFoundWithoutALookAtTheRestOfTheText) {
    constexpr std::size_t rest = std::size_t{1} << 32; // would be read for seconds, and may not be read at all
    for (const std::string_view unit :
         {"x", "\r\n", "\u00F1", "\u4E2D", "e\u0301", "\u0915\u093F", "\U0001F1EA\U0001F1F8"}) {
        const test::GuardedText text(repeated(unit, 4'000), rest);
        EXPECT_EQ(graphemes::prefix(text.viewWithGuard(), 200), repeated(unit, 200));
    }
}

TEST(Graphemes, ALongRunOfIdeographsKanaAndSyllablesIsCountedWhereverItEnds) {
    std::mt19937 random(7);
    const std::u32string_view plain = U"\u4E2D\u6587\u3042\u30AB\u3001\uFF01\uAC00\uD7A3\u2014";
    for (const std::string_view end :
         {"", "\u0301", "\u3099", "\u11A8", "\u200D\u4E2D", "x", "\r\n", "\u00E9", "\u0600", "\U0001F600", "\uFE0F"}) {
        for (int turn = 0; turn < 30; ++turn) {
            const std::string run = test::randomText(random, plain, randomBelow(random, 60));
            expectBoundariesOfICU(joined({run, end, run, end}), random, 20);
        }
    }
}

TEST(Graphemes, ASureBoundaryIsOneWhateverTheTextIsPartOf) {
    EXPECT_EQ(graphemes::lastSureBoundary("", 10), 0);
    EXPECT_EQ(graphemes::lastSureBoundary("a", 10), 0);
    EXPECT_EQ(graphemes::lastSureBoundary("abc", 10), 2);
    EXPECT_EQ(graphemes::lastSureBoundary("ab\r\n", 10), 2);
    EXPECT_EQ(graphemes::lastSureBoundary("\u4E2D\u6587\u0301", 10), 3);
    EXPECT_EQ(graphemes::lastSureBoundary("a\u0301b\u0301", 10), 0);
    EXPECT_EQ(graphemes::lastSureBoundary("ab" + repeated("\u0301", 10), 10), 0) << "not looked at";
    std::mt19937 random(8);
    for (const Alphabet& alphabet : alphabets) {
        for (int turn = 0; turn < 500; ++turn) {
            const std::string text = test::randomText(random, alphabet.characters, randomBelow(random, 20));
            const std::size_t cut = graphemes::lastSureBoundary(text, 30);
            const std::vector<std::size_t> boundaries = boundariesByICU("\u0600" + text + "\u0301");
            if (cut == 0)
                continue;
            ASSERT_LT(cut, text.size());
            ASSERT_TRUE(std::ranges::binary_search(boundaries, cut + 2)) << testing::PrintToString(text);
        }
    }
}

TEST(Graphemes, ThreadsCountIndependently) {
    const std::string text = repeated("e\u0301x\u0915\u093F", 2'000);
    std::vector<std::int64_t> counts(4);
    std::vector<std::thread> threads;
    threads.reserve(counts.size());
    for (std::int64_t& count : counts)
        threads.emplace_back([&] {
            for (int turn = 0; turn < 20; ++turn)
                count += graphemes::count(text);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counts, std::vector<std::int64_t>(4, 120'000));
}

TEST(GraphemesDeathTest, ANegativeNumberOfClustersIsAProgrammingError) {
    EXPECT_DEATH(graphemes::prefix("a", -1), "programming error");
}

} // namespace
} // namespace quelm
