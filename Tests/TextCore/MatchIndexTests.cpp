#include "Tests/TextCore/Support/Ropes.h"
#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/MatchIndex.h"

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

TEST(MatchIndex, KnowsEveryMatchByNumberAndPlace) {
    std::mt19937 random(5);
    for (int round = 0; round < 4; ++round) {
        const std::string text = randomText(random, round % 2 == 0 ? U"aAbñ" : U"abcdefghijklmnopqrstuvwxyz", 300'000);
        const std::string needle = round < 2 ? "ab" : "abA";
        const TextRope searched = inPieces(random, text);
        const SearchPattern pattern(needle, CaseSensitivity::insensitive);
        const std::vector<ByteRange> expected = allMatches(searched, pattern, {0, searched.byteCount()});
        const auto index = MatchIndex::build(searched, pattern);
        ASSERT_TRUE(index);
        index->checkInvariants();
        ASSERT_EQ(index->count(), std::ssize(expected));
        for (int question = 0; question < 200; ++question) {
            const auto number = std::int64_t(randomBelow(random, expected.size()));
            const ByteRange& range = expected[std::size_t(number)];
            const MatchIndex::NumberedMatch match{number, range};
            ASSERT_EQ(index->match(number), range);
            ASSERT_EQ(index->matchAt(range), match);
            ASSERT_EQ(index->matchAt({range.location, range.length - 1}), std::nullopt);
            ASSERT_EQ(index->firstFrom(range.location), match);
            ASSERT_EQ(index->lastBefore(range.end()), match);
            const auto next = index->firstFrom(range.location + 1);
            ASSERT_EQ(next ? next->number : index->count(), number + 1);
            const auto previous = index->lastBefore(range.end() - 1);
            ASSERT_EQ(previous ? previous->number : -1, number - 1);
        }
        EXPECT_EQ(index->firstFrom(searched.byteCount()), std::nullopt);
        EXPECT_EQ(index->lastBefore(0), std::nullopt);
    }
}

TEST(MatchIndex, CountsSingleLetters) {
    std::mt19937 random(8);
    const std::string text = randomText(random, U"aAbkK\u212Añ", 200'000);
    const TextRope searched = inPieces(random, text);
    for (const auto sensitivity : {CaseSensitivity::sensitive, CaseSensitivity::insensitive}) {
        for (const std::string_view needle : {"a", "k", "ñ"}) {
            const SearchPattern pattern(needle, sensitivity);
            const std::vector<ByteRange> expected = allMatches(searched, pattern, {0, searched.byteCount()});
            const auto index = MatchIndex::build(searched, pattern);
            ASSERT_TRUE(index);
            index->checkInvariants();
            EXPECT_EQ(index->count(), std::ssize(expected));
            EXPECT_EQ(index->match(index->count() - 1), expected.back());
            EXPECT_EQ(countMatches(searched, pattern, {0, searched.byteCount()}), std::ssize(expected));
        }
    }
}

TEST(MatchIndex, IsEmptyWithoutMatches) {
    const auto index = MatchIndex::build(rope("uno"), SearchPattern("dos", CaseSensitivity::sensitive));
    ASSERT_TRUE(index);
    EXPECT_EQ(index->count(), 0);
    EXPECT_EQ(index->firstFrom(0), std::nullopt);
    EXPECT_EQ(index->lastBefore(3), std::nullopt);
}

TEST(MatchIndex, TellsItsProgress) {
    SearchProgress progress;
    const TextRope text = rope(repeated("uno ", 100'000));
    const auto index = MatchIndex::build(text, SearchPattern("uno", CaseSensitivity::sensitive), {}, &progress);
    EXPECT_EQ(progress.matches, 100'000);
    EXPECT_GT(progress.bytes, text.byteCount() - 4);
}

TEST(MatchIndex, KnowsMatchesLongerThanItsBlocks) {
    std::mt19937 random(7);
    const std::string needle = randomText(random, U"abñ", 200'000);
    const TextRope searched = inPieces(random, joined({"aba", needle, "ñ", needle, needle, "b"}));
    const auto index = MatchIndex::build(searched, SearchPattern(needle, CaseSensitivity::sensitive));
    ASSERT_TRUE(index);
    index->checkInvariants();
    const auto length = std::int64_t(needle.size());
    EXPECT_EQ(index->match(0), (ByteRange{3, length}));
    EXPECT_EQ(index->match(2), (ByteRange{2 * length + 5, length}));
}

TEST(MatchIndex, IsAbsentWhenItWasStopped) {
    std::stop_source source;
    source.request_stop();
    EXPECT_FALSE(MatchIndex::build(rope("uno"), SearchPattern("uno", CaseSensitivity::sensitive), source.get_token()));
}

} // namespace
} // namespace quelm
