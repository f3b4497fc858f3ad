#include "Tests/TextCore/Support/Ropes.h"
#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/MatchScanner.h"
#include "TextCore/RopeSearch.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
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
using test::rope;
using Ranges = std::vector<ByteRange>;

ByteRange whole(const TextRope& text) {
    return {0, text.byteCount()};
}

Ranges found(std::string_view text, std::string_view needle, CaseSensitivity sensitivity) {
    const TextRope searched = rope(text);
    return allMatches(searched, SearchPattern(needle, sensitivity), whole(searched));
}

Ranges foundInAnyCase(std::string_view text, std::string_view needle) {
    return found(text, needle, CaseSensitivity::insensitive);
}

// The model: characters compared one by one.

struct Characters {
    std::vector<UChar32> folded;
    /// Where each begins, and where the text ends.
    std::vector<std::int64_t> places;
};

Characters charactersOf(std::string_view text, CaseSensitivity sensitivity) {
    Characters result;
    const icu::UnicodeString units =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), std::int32_t(text.size())));
    std::int64_t place = 0;
    for (std::int32_t index = 0; index < units.length(); index = units.moveIndex32(index, 1)) {
        const UChar32 character = units.char32At(index);
        result.folded.push_back(sensitivity == CaseSensitivity::sensitive ? character
                                                                          : u_foldCase(character, U_FOLD_CASE_DEFAULT));
        result.places.push_back(place);
        place += character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
    }
    result.places.push_back(place);
    return result;
}

/// All occurrences, overlapping ones as well.
Ranges modelOccurrences(std::string_view text, std::string_view needle, CaseSensitivity sensitivity) {
    const Characters characters = charactersOf(text, sensitivity);
    const std::vector<UChar32> wanted = charactersOf(needle, sensitivity).folded;
    Ranges result;
    for (std::size_t start = 0; start + wanted.size() <= characters.folded.size(); ++start)
        if (std::equal(wanted.begin(), wanted.end(), characters.folded.begin() + std::ptrdiff_t(start)))
            result.push_back(ByteRange::between(characters.places[start], characters.places[start + wanted.size()]));
    return result;
}

Ranges withoutOverlaps(const Ranges& occurrences) {
    Ranges result;
    for (const ByteRange& occurrence : occurrences)
        if (result.empty() || occurrence.location >= result.back().end())
            result.push_back(occurrence);
    return result;
}

TEST(RopeSearch, FindsWhatTheStandardLibraryFindsInTextsOfManyBlocks) {
    std::mt19937 random(1);
    for (int round = 0; round < 8; ++round) {
        const std::string text = randomText(random, U"abc\",:", 400'000);
        const std::string needle = text.substr(randomBelow(random, text.size() - 20), 1 + randomBelow(random, 9));
        Ranges expected;
        for (std::size_t place = text.find(needle); place != std::string::npos;
             place = text.find(needle, place + needle.size()))
            expected.push_back({std::int64_t(place), std::int64_t(needle.size())});
        const TextRope searched = inPieces(random, text);
        EXPECT_EQ(allMatches(searched, SearchPattern(needle, CaseSensitivity::sensitive), whole(searched)), expected)
            << needle;
    }
}

TEST(RopeSearch, FindsNeedlesAcrossTheBordersOfPiecesAndBlocks) {
    std::mt19937 random(2);
    for (const std::int64_t border : {MatchScanner::blockLength, 2 * MatchScanner::blockLength}) {
        for (std::int64_t before = 0; before <= 8; ++before) {
            const std::string text =
                joined({std::string(std::size_t(border - before), '.'), "una ñu", std::string(70'000, '.')});
            const TextRope searched = inPieces(random, text);
            const SearchPattern pattern("una ñu", CaseSensitivity::sensitive);
            const ByteRange expected{border - before, 7};
            EXPECT_EQ(firstMatch(searched, pattern, whole(searched)), expected);
            EXPECT_EQ(lastMatch(searched, pattern, whole(searched)), expected);
        }
    }
}

TEST(RopeSearch, FindsNeedlesLongerThanBlocks) {
    std::mt19937 random(3);
    const std::string needle = randomText(random, U"abñ", 200'000);
    const std::string text = joined({"aba", needle, "ñ", needle, needle, "b"});
    const TextRope searched = inPieces(random, text);
    const auto length = std::int64_t(needle.size());
    const SearchPattern pattern(needle, CaseSensitivity::sensitive);
    EXPECT_EQ(allMatches(searched, pattern, whole(searched)),
              (Ranges{{3, length}, {length + 5, length}, {2 * length + 5, length}}));
    EXPECT_EQ(lastMatch(searched, pattern, whole(searched)), (ByteRange{2 * length + 5, length}));
}

TEST(RopeSearch, MatchesDoNotOverlapAndTheLeftmostCount) {
    EXPECT_EQ(found("aaaaaaa", "aaa", CaseSensitivity::sensitive), (Ranges{{0, 3}, {3, 3}}));
    EXPECT_EQ(found("abababa", "aba", CaseSensitivity::sensitive), (Ranges{{0, 3}, {4, 3}}));
}

TEST(RopeSearch, TheLastMatchIsTheOneThatBeginsLast) {
    const TextRope text = rope("aaaaaaa");
    const SearchPattern pattern("aaa", CaseSensitivity::sensitive);
    EXPECT_EQ(lastMatch(text, pattern, whole(text)), (ByteRange{4, 3}));
    EXPECT_EQ(lastMatch(text, pattern, {0, 6}), (ByteRange{3, 3}));
    EXPECT_EQ(lastMatch(text, pattern, {0, 2}), std::nullopt);
}

TEST(RopeSearch, LooksOnlyWithinTheStretch) {
    const TextRope text = rope("uno dos uno dos");
    const SearchPattern pattern("dos", CaseSensitivity::sensitive);
    EXPECT_EQ(firstMatch(text, pattern, {5, 10}), (ByteRange{12, 3}));
    EXPECT_EQ(firstMatch(text, pattern, {5, 9}), std::nullopt);
    EXPECT_EQ(lastMatch(text, pattern, {0, 14}), (ByteRange{4, 3}));
    EXPECT_EQ(lastMatch(text, pattern, {5, 9}), std::nullopt);
    EXPECT_EQ(firstMatch(text, pattern, {15, 0}), std::nullopt);
    EXPECT_EQ(lastMatch(TextRope(), pattern, {0, 0}), std::nullopt);
}

TEST(RopeSearch, CaseIsIgnoredInAllLetters) {
    EXPECT_EQ(foundInAnyCase("Año AÑO aÑo ano", "año"), (Ranges{{0, 4}, {5, 4}, {10, 4}}));
    EXPECT_EQ(foundInAnyCase("ΣΊΣΥΦΟΣ σίσυφος", "ΣΊΣΥΦΟΣ"), (Ranges{{0, 14}, {15, 14}}));
    EXPECT_EQ(foundInAnyCase("[TRUE]", "true"), (Ranges{{1, 4}}));
    EXPECT_EQ(found("Año AÑO", "AÑO", CaseSensitivity::sensitive), (Ranges{{5, 4}}));
}

TEST(RopeSearch, FoldsOneCharacterForOne) {
    EXPECT_EQ(foundInAnyCase("STRASSE", "straße"), Ranges{});
    EXPECT_EQ(foundInAnyCase("STRAẞE", "straße"), (Ranges{{0, 8}}));
    // The dotted capital has no simple folding, and "i" is "I" in every language.
    EXPECT_EQ(foundInAnyCase("İI", "i"), (Ranges{{2, 1}}));
    EXPECT_EQ(foundInAnyCase("iİ", "İ"), (Ranges{{1, 2}}));
}

TEST(RopeSearch, CaseFormsMayDifferInLength) {
    // The sign of kelvin and the long s.
    EXPECT_EQ(foundInAnyCase("10 \u212A, 5 k", "k"), (Ranges{{3, 3}, {10, 1}}));
    EXPECT_EQ(foundInAnyCase("ma\u017F KA\u017F", "Kas"), (Ranges{{5, 4}}));
    EXPECT_EQ(foundInAnyCase("KASKA\u017F\u212AAS", "kas"), (Ranges{{0, 3}, {3, 4}, {7, 5}}));
}

TEST(RopeSearch, FindsBytesOfZero) {
    const std::string text("a\0b\0", 4);
    EXPECT_EQ(found(text, std::string_view("\0", 1), CaseSensitivity::sensitive), (Ranges{{1, 1}, {3, 1}}));
    EXPECT_EQ(found("ab", std::string_view("b\0", 2), CaseSensitivity::sensitive), Ranges{});
}

TEST(RopeSearch, FindsWhatAComparisonOfAllCharactersFinds) {
    std::mt19937 random(4);
    for (int round = 0; round < 300; ++round) {
        const std::string text = randomText(random, U"aAñÑkK\u212AsSſ😀", randomBelow(random, 300));
        const std::string needle = randomText(random, U"aAñÑkK\u212AsSſ😀", 1 + randomBelow(random, 3));
        const auto sensitivity = round % 2 == 0 ? CaseSensitivity::sensitive : CaseSensitivity::insensitive;
        const Ranges occurrences = modelOccurrences(text, needle, sensitivity);
        const TextRope searched = inPieces(random, text);
        const SearchPattern pattern(needle, sensitivity);
        ASSERT_EQ(allMatches(searched, pattern, whole(searched)), withoutOverlaps(occurrences));
        ASSERT_EQ(countMatches(searched, pattern, whole(searched)), std::ssize(withoutOverlaps(occurrences)));
        ASSERT_EQ(firstMatch(searched, pattern, whole(searched)),
                  occurrences.empty() ? std::nullopt : std::optional(occurrences.front()));
        ASSERT_EQ(lastMatch(searched, pattern, whole(searched)),
                  occurrences.empty() ? std::nullopt : std::optional(occurrences.back()));
        for (const ByteRange& occurrence : occurrences)
            ASSERT_TRUE(isMatch(searched, pattern, occurrence));
    }
}

TEST(RopeSearch, AStretchIsAMatchOnlyAsAWhole) {
    const TextRope text = rope("uno dos");
    const SearchPattern pattern("DOS", CaseSensitivity::insensitive);
    EXPECT_TRUE(isMatch(text, pattern, {4, 3}));
    EXPECT_FALSE(isMatch(text, pattern, {3, 4}));
    EXPECT_FALSE(isMatch(text, pattern, {4, 2}));
    EXPECT_FALSE(isMatch(text, pattern, {0, 3}));
}

TEST(RopeSearch, AStoppedSearchFindsNothing) {
    const TextRope text = rope("uno");
    const SearchPattern pattern("uno", CaseSensitivity::sensitive);
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(firstMatch(text, pattern, whole(text), source.get_token()), std::nullopt);
    EXPECT_EQ(lastMatch(text, pattern, whole(text), source.get_token()), std::nullopt);
    EXPECT_EQ(allMatches(text, pattern, whole(text), source.get_token()), Ranges{});
    EXPECT_EQ(countMatches(text, pattern, whole(text), source.get_token()), 0);
}

} // namespace
} // namespace quelm
