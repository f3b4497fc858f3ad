#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/UTF8.h"

#include <unicode/utf8.h>

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quelm {
namespace {

using test::randomBelow;

TEST(UTF8, TheEmptyTextIsValidASCIIWithoutLines) {
    EXPECT_TRUE(utf8::isValid({}));
    EXPECT_TRUE(utf8::isASCII({}));
    EXPECT_EQ(utf8::asciiPrefixLength({}), 0u);
    EXPECT_EQ(utf8::countLineFeeds({}), 0u);
    EXPECT_EQ(utf8::repaired({}), std::nullopt);
}

TEST(UTF8, NULIsAnOrdinaryCharacter) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(utf8::isValid("\0a\0"sv));
    EXPECT_TRUE(utf8::isASCII("\0a\0"sv));
    EXPECT_EQ(utf8::repaired("\0\xFF\0"sv), "\0\uFFFD\0"sv);
}

TEST(UTF8, ValidTextNeedsNoRepair) {
    EXPECT_EQ(utf8::repaired("camión \u20AC \U0001F600 \uFFFD"), std::nullopt);
    EXPECT_EQ(utf8::repaired("\xEF\xBB\xBF{}"), std::nullopt) << "a byte-order mark is a character";
}

struct Repair {
    std::string_view bytes;
    std::string_view repaired;
};

// The examples of chapter 3 of the Unicode Standard: non-shortest forms, surrogates, other ill-formed
// sequences, truncated sequences, and the one that explains maximal subparts.
TEST(UTF8, EveryMaximalIllFormedSubpartBecomesOneReplacementCharacter) {
    constexpr Repair repairs[] = {
        {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
        {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
        {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFDB"},
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", "\uFFFD\uFFFD\uFFFD\uFFFDA"},
        {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64", "a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
    };
    for (const Repair& repair : repairs)
        EXPECT_EQ(utf8::repaired(repair.bytes), repair.repaired);
}

TEST(UTF8, ASequenceCutShortByTheEndBecomesOneReplacementCharacter) {
    EXPECT_EQ(utf8::repaired("a\xC3"), "a\uFFFD");
    EXPECT_EQ(utf8::repaired("a\xE2\x82"), "a\uFFFD");
    EXPECT_EQ(utf8::repaired("a\xF0\x9F\x98"), "a\uFFFD");
    EXPECT_EQ(utf8::repaired("a\xF0\x8F"), "a\uFFFD\uFFFD");
}

std::string repairedByICU(std::string_view bytes) {
    std::string text;
    for (std::size_t position = 0; position < bytes.size();) {
        UChar32 scalar;
        // NOLINTNEXTLINE(bugprone-inc-dec-in-conditions): inside the macro
        U8_NEXT_OR_FFFD(bytes.data(), position, bytes.size(), scalar);
        text += test::utf8Of(std::u32string(1, static_cast<char32_t>(scalar)));
    }
    return text;
}

TEST(UTF8, RepairsRandomBytesAsICUDoes) {
    std::mt19937 random(1);
    constexpr std::string_view pieces[] = {"plain ", "\u00E9", "\u20AC", "\U0001F600", "\xE2\x82", "\xF0\x9F\x98"};
    for (int turn = 0; turn < 20'000; ++turn) {
        std::string bytes;
        for (std::size_t left = randomBelow(random, 40); left > 0; --left) {
            if (randomBelow(random, 2) == 0)
                bytes += pieces[randomBelow(random, std::size(pieces))];
            else
                bytes += static_cast<char>(randomBelow(random, 4) == 0 ? random() : 0x80 | random());
        }
        const std::string expected = repairedByICU(bytes);
        ASSERT_EQ(utf8::repaired(bytes).value_or(bytes), expected) << testing::PrintToString(bytes);
        ASSERT_EQ(utf8::repaired(expected), std::nullopt);
    }
}

TEST(UTF8, AppendsTheFormOfEveryScalarValue) {
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (scalar == 0xD800)
            scalar = 0xE000;
        std::string text;
        utf8::append(text, scalar);
        std::uint8_t expected[U8_MAX_LENGTH];
        std::size_t size = 0;
        U8_APPEND_UNSAFE(expected, size, scalar);
        ASSERT_EQ(text, std::string_view(reinterpret_cast<const char*>(expected), size));
    }
}

TEST(UTF8, AppendingKeepsWhatIsThere) {
    std::string text = "año ";
    utf8::append(text, U'\u00F1');
    utf8::append(text, U'\U0001F600');
    EXPECT_EQ(text, "año \u00F1\U0001F600");
}

TEST(UTF8DeathTest, AppendingWhatIsNoScalarValueIsAProgrammingError) {
    std::string text;
    EXPECT_DEATH(utf8::append(text, 0xD800), "programming error");
    EXPECT_DEATH(utf8::append(text, 0xDFFF), "programming error");
    EXPECT_DEATH(utf8::append(text, 0x110000), "programming error");
}

} // namespace
} // namespace quelm
