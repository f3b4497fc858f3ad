#include "Tests/TextCore/Support/Ropes.h"
#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/MatchReplacement.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

using test::inPieces;
using test::joined;
using test::randomBelow;
using test::randomText;
using test::repeated;
using test::rope;

std::string replaced(const TextRope& text, const MatchReplacement& replacement) {
    return std::string(text.replacing(replacement.range, replacement.replacement).contiguous().view());
}

TEST(MatchReplacement, ReplacesAllMatchesFromTheFirstToTheLast) {
    const TextRope text = rope("uno Dos tres dos.");
    const auto result = replacingMatches(text, SearchPattern("dos", CaseSensitivity::insensitive), "cuatro", 1000);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->count, 2);
    EXPECT_EQ(result->range, (ByteRange{4, 12}));
    EXPECT_EQ(result->replacement, rope("cuatro tres cuatro"));
    EXPECT_EQ(replaced(text, *result), "uno cuatro tres cuatro.");
}

TEST(MatchReplacement, LeavesATextWithoutMatchesAsItIs) {
    const auto result = replacingMatches(rope("uno"), SearchPattern("dos", CaseSensitivity::sensitive), "tres", 1000);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->count, 0);
    EXPECT_TRUE(result->range.isEmpty());
    EXPECT_TRUE(result->replacement.isEmpty());
}

TEST(MatchReplacement, ReplacesMatchesNearAndFarLikeASimpleLoop) {
    std::mt19937 random(6);
    for (const std::string_view replacement : {"", "x", "una cosa larga"}) {
        std::string text;
        for (int part = 0; part < 200; ++part)
            text += joined({randomText(random, U"abcñ", randomBelow(random, 9000)), repeated("clave", 1 + part % 3)});
        std::string expected = text;
        for (std::size_t place = expected.find("clave"); place != std::string::npos;
             place = expected.find("clave", place + replacement.size()))
            expected.replace(place, 5, replacement);

        const TextRope searched = inPieces(random, text);
        const auto result =
            replacingMatches(searched, SearchPattern("clave", CaseSensitivity::sensitive), replacement, 100'000'000);
        ASSERT_TRUE(result);
        result->replacement.checkInvariants();
        EXPECT_EQ(replaced(searched, *result), expected);
    }
}

TEST(MatchReplacement, RefusesAResultThatIsTooLong) {
    const TextRope text = rope(repeated("a", 1000));
    const SearchPattern pattern("a", CaseSensitivity::sensitive);
    EXPECT_TRUE(replacingMatches(text, pattern, "bb", 2000));
    const auto result = replacingMatches(text, pattern, "bb", 1999);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), MatchReplacementFailure::tooLong);
}

TEST(MatchReplacement, OnlyTheWholeResultMayBeTooLong) {
    // Longer than several blocks of the search, so that the text is too long in between.
    constexpr std::size_t times = 200'000;
    constexpr std::int64_t length = std::int64_t{4} * times;
    const SearchPattern letter("k", CaseSensitivity::insensitive);
    const std::string kelvinSigns = repeated("\u212A", times); // of three bytes each
    const TextRope growing = rope(repeated("k", times) + kelvinSigns);
    EXPECT_TRUE(replacingMatches(growing, letter, "xx", length));
    EXPECT_FALSE(replacingMatches(growing, letter, "xx", length - 1));
    EXPECT_TRUE(replacingMatches(rope(kelvinSigns), letter, "x", times)) << "shorter than the text is now";
}

TEST(MatchReplacement, StopsWhenAskedTo) {
    std::stop_source source;
    source.request_stop();
    const auto result =
        replacingMatches(rope("uno"), SearchPattern("uno", CaseSensitivity::sensitive), "", 100, source.get_token());
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), MatchReplacementFailure::stopped);
}

} // namespace
} // namespace quelm
