#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/CanonicalText.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <compare>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

using test::randomBelow;
using test::repeated;

icu::UnicodeString nfc(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    return icu::Normalizer2::getNFCInstance(status)->normalize(icu::UnicodeString::fromUTF8(text), status);
}

/// By the scalar values of whole normalised texts, all through UTF-16.
std::weak_ordering compareByICU(std::string_view left, std::string_view right) {
    return nfc(left).compareCodePointOrder(nfc(right)) <=> 0;
}

std::string nameOf(std::weak_ordering order) {
    return order < 0 ? "before" : order > 0 ? "after" : "equivalent";
}

void expectOrderOfICU(std::string_view left, std::string_view right) {
    const std::weak_ordering expected = compareByICU(left, right);
    ASSERT_EQ(nameOf(canonical::compare(left, right)), nameOf(expected))
        << testing::PrintToString(left) << " and " << testing::PrintToString(right);
    ASSERT_EQ(canonical::equal(left, right), expected == 0);
    if (expected == 0) {
        ASSERT_EQ(canonical::hash(left), canonical::hash(right));
    }
}

struct Pair {
    std::string_view left;
    std::string_view right;
};

constexpr Pair equivalents[] = {
    {"ma\u00F1ana", "man\u0303ana"},    // composed and decomposed
    {"\u212B", "A\u030A"},              // ANGSTROM SIGN
    {"\u212A", "K"},                    // KELVIN SIGN
    {"\u037E", ";"},                    // GREEK QUESTION MARK
    {"\u1FEF", "`"},                    // GREEK VARIA
    {"clave \u212Ab", "clave Kb"},      //
    {"\uAC00", "\u1100\u1161"},         // a Hangul syllable
    {"q\u0307\u0323", "q\u0323\u0307"}, // marks in another order
    {"\u0958", "\u0915\u093C"},         // excluded from composition
    {"\uF900", "\u8C48"},               // a compatibility ideograph
    {"\u1E69", "s\u0307\u0323"},        // two marks, out of order
    {"\u0344", "\u0308\u0301"},         // a mark that decomposes
    {"\U0002F800", "\u4E3D"},           // the same, above the first plane
    {"", ""},
};

TEST(CanonicalText, CanonicallyEquivalentTextsAreEqualAndHashAlike) {
    for (const auto& [left, right] : equivalents) {
        EXPECT_TRUE(canonical::equal(left, right)) << left;
        EXPECT_TRUE(canonical::equal(right, left)) << left;
        EXPECT_TRUE(canonical::compare(left, right) == 0) << left;
        EXPECT_EQ(canonical::hash(left), canonical::hash(right)) << left;
    }
}

TEST(CanonicalText, OtherwiseSimilarTextsDiffer) {
    constexpr Pair different[] = {
        {"a", "A"},           {"n", "\u00F1"},        {"\uFB01", "fi"},
        {"a", "\uFF41"},      {"\u00E9", "e"},        {"a", ""},
        {"\u2126", "\u2127"}, {"a\u0301", "a\u0300"}, {"q\u0301\u0307", "q\u0307\u0301"},
        {"\u00A0", " "},      {"k", "\u212A"},
    };
    for (const auto& [left, right] : different) {
        EXPECT_FALSE(canonical::equal(left, right)) << left << ' ' << right;
        EXPECT_FALSE(canonical::equal(right, left)) << left << ' ' << right;
    }
}

TEST(CanonicalText, OrderIsThatOfScalarValuesNotOfAnyLanguage) {
    using namespace std::string_view_literals;
    constexpr std::string_view ascending[] = {
        ""sv,       "\0"sv,     "\0\0"sv,   "10"sv,     "9"sv,          "A"sv,          "Z"sv,          "a"sv,
        "a\0"sv,    "ab"sv,     "b"sv,      "o"sv,      "z"sv,          "\u00E1"sv,     "\u00F1"sv,     "\u0436"sv,
        "\u4E2D"sv, "\uE000"sv, "\uFF61"sv, "\uFFFF"sv, "\U00010000"sv, "\U0001F600"sv, "\U0010FFFF"sv,
    };
    for (std::size_t left = 0; left < std::size(ascending); ++left)
        for (std::size_t right = 0; right < std::size(ascending); ++right)
            EXPECT_TRUE(canonical::compare(ascending[left], ascending[right]) == (left <=> right))
                << left << ' ' << right;
}

TEST(CanonicalText, AMarkAfterTheFirstDifferenceDecides) {
    // By bytes "az" would come after "a\u0301", whose form is the single character U+00E1.
    EXPECT_TRUE(canonical::compare("az", "a\u0301") < 0);
    EXPECT_TRUE(canonical::compare("ab", "aa\u0301") < 0);
    EXPECT_TRUE(canonical::compare("a\u0301", "b") > 0);
    EXPECT_TRUE(canonical::compare("a", "a\u0301") < 0);
    EXPECT_TRUE(canonical::compare("e\u0301\u0323", "e\u0323") > 0);
}

TEST(CanonicalText, ComparesRandomTextsAsICUDoes) {
    constexpr std::u32string_view alphabet = U"aeKk;`"
                                             U"\u00E5\u00E9\u00F1\u0300\u0301\u030A\u0303\u0307\u0323\u0327"
                                             U"\u212A\u212B\u037E\u1FEF\u1100\u1161\u11A8"
                                             U"\uAC00\uAC01\u0958\u0915\u093C\uFB1D\u0344\u2126\uF900\u8C48"
                                             U"\uFF61\U0002F800\U0001D15E\U0001D157\U0001D165"
                                             U"\U0001F600\U000110BA\U00011099";
    std::mt19937 random(1);
    for (int turn = 0; turn < 60'000; ++turn) {
        const std::string start = test::randomText(random, alphabet, randomBelow(random, 12));
        const std::string left = start + test::randomText(random, alphabet, randomBelow(random, 4));
        std::string right = start + test::randomText(random, alphabet, randomBelow(random, 4));
        if (turn % 3 == 0) {
            UErrorCode status = U_ZERO_ERROR;
            const icu::UnicodeString decomposed =
                icu::Normalizer2::getNFDInstance(status)->normalize(icu::UnicodeString::fromUTF8(left), status);
            right.clear();
            decomposed.toUTF8String(right);
        }
        expectOrderOfICU(left, right);
        expectOrderOfICU(right, left);
    }
}

/// Runs of characters of one script, so that marks, jamo and the like stand next to their like.
constexpr std::u32string_view scripts[] = {
    U"abzK;` ",
    U"\u00E5\u00E9\u1E69\u1EAD\u01D5\u212A\u212B\u0344\u037E",
    U"\u0300\u0301\u0302\u0307\u0308\u031B\u0323\u0327\u0345\u0338",
    U"\u1100\u1112\u1161\u1175\u11A8\u11C2\uAC00\uAC01\uD7A3",
    U"\u0436\u0439\u0418\u0306\u0308\u0451\u0483",
    U"\u0958\u0915\u093C\u09C7\u09BE\u09D7\u09CB\u0DDD\u0DD9\u0DCF\u0DCA",
    U"\uFB1D\u05D9\u05B4\u05BC\u0653\u0655\u0627\u0622",
    U"\U0002F800\u4E3D\U0001D15E\U0001D157\U0001D165\U0001D16E\U0001F600\U000110BA\U00011099\U0001109A",
};

std::string textOfScripts(std::mt19937& random, std::size_t runs, std::size_t longestRun) {
    std::string text;
    for (std::size_t run = 0; run < runs; ++run)
        text += test::randomText(random, scripts[randomBelow(random, std::size(scripts))],
                                 randomBelow(random, longestRun + 1));
    return text;
}

/// An equivalent text: normalised in one of three ways, or not.
std::string rewritten(std::mt19937& random, std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString units = icu::UnicodeString::fromUTF8(text);
    std::string result;
    switch (randomBelow(random, 4)) {
    case 0:
        return std::string(text);
    case 1:
        icu::Normalizer2::getNFDInstance(status)->normalize(units, status).toUTF8String(result);
        break;
    case 2:
        icu::Normalizer2::getNFCInstance(status)->normalize(units, status).toUTF8String(result);
        break;
    default:
        icu::Normalizer2::getInstance(nullptr, "nfc", UNORM2_FCD, status)
            ->normalize(units, status)
            .toUTF8String(result);
        break;
    }
    return result;
}

TEST(CanonicalText, ComparesTextsOfManyScriptsAsICUDoes) {
    std::mt19937 random(2);
    for (int turn = 0; turn < 40'000; ++turn) {
        const std::string start = textOfScripts(random, randomBelow(random, 4), 4);
        const std::string end = textOfScripts(random, randomBelow(random, 4), 4);
        const bool isSame = randomBelow(random, 2) == 0;
        const std::string middle = textOfScripts(random, 1, 3);
        const std::string left = rewritten(random, start) + rewritten(random, middle + end);
        const std::string right =
            rewritten(random, start) + rewritten(random, (isSame ? middle : textOfScripts(random, 1, 3)) + end);
        expectOrderOfICU(left, right);
        expectOrderOfICU(right, left);
    }
}

TEST(CanonicalText, ComparesTextsOfManyPiecesAsICUDoes) {
    std::mt19937 random(3);
    for (int turn = 0; turn < 150; ++turn) {
        const std::string start = textOfScripts(random, 40, 120);
        const std::string end = textOfScripts(random, 40, 120);
        const std::string left = rewritten(random, start + end);
        const std::string right = rewritten(random, start + textOfScripts(random, randomBelow(random, 2), 1) + end);
        expectOrderOfICU(left, right);
        expectOrderOfICU(right, left);
        std::string storage;
        std::string expected;
        nfc(left).toUTF8String(expected);
        ASSERT_EQ(canonical::form(left, storage), expected);
    }
}

TEST(CanonicalText, PutsRunsOfThousandsOfMarksInOrder) {
    std::mt19937 random(4);
    constexpr std::u32string_view marks = U"\u0301\u0323\u0327\u031B\u0344\u0345\u0338";
    for (const std::size_t length : {500, 1'000, 1'500, 5'000}) {
        const std::string run = "a" + test::randomText(random, marks, length);
        for (const std::string& text : {run, run + "z", "\u00E9" + run + "\uAC00", run + "\u1161"}) {
            std::string expected;
            nfc(text).toUTF8String(expected);
            std::string storage;
            ASSERT_EQ(canonical::form(text, storage), expected);
            ASSERT_EQ(canonical::form(expected, storage).data(), expected.data());
            expectOrderOfICU(text, expected);
            expectOrderOfICU(text, expected + "\u0301");
            expectOrderOfICU("\u0301" + text, text);
        }
    }
}

TEST(CanonicalText, MarksOfOneClassKeepTheirOrderAndOthersDoNot) {
    EXPECT_TRUE(canonical::equal("q\u0301\u0323\u0307", "q\u0323\u0301\u0307"));
    EXPECT_TRUE(canonical::equal("q\u0301\u0307\u0323\u0323", "q\u0323\u0301\u0323\u0307"));
    EXPECT_FALSE(canonical::equal("q\u0301\u0323\u0307", "q\u0323\u0307\u0301"));
    EXPECT_FALSE(canonical::equal("q\u0301\u0323x", "q\u0323x\u0301"));
    EXPECT_FALSE(canonical::equal("q\u0301\u0323", "q\u0323"));
    EXPECT_FALSE(canonical::equal("q\u0301\u0323z", "q\u0323\u0323z"));
    EXPECT_FALSE(canonical::equal("\u0301", ""));
}

TEST(CanonicalText, TextsInDifferentFormsThroughoutAreEqualUnlessTheyEndDifferently) {
    for (const std::size_t size : {255, 256, 257, 5'000}) {
        const std::string composed = repeated("\u00E9z", size);
        const std::string decomposed = repeated("e\u0301z", size);
        expectOrderOfICU(composed, decomposed);
        expectOrderOfICU(composed + "\u0301", decomposed);
        expectOrderOfICU(composed + "\u0301\u0323x", decomposed + "\u0323\u0301x");
        expectOrderOfICU(composed + "\u0301\u0323x", decomposed + "\u0323\u0301y");
    }
}

TEST(CanonicalText, OneTextIsEqualToItselfAndToItsCopy) {
    const std::string text = repeated("ma\u00F1ana ", 2'000);
    const std::string copy = text;
    EXPECT_TRUE(canonical::equal(text, text));
    EXPECT_TRUE(canonical::equal(text, copy));
    EXPECT_FALSE(canonical::equal(text, std::string_view(text).substr(0, text.size() - 1)));
    EXPECT_FALSE(canonical::equal(text, copy + "a"));
}

TEST(CanonicalText, AShortDifferenceBehindALongCommonStartIsFound) {
    for (std::size_t size = 0; size < 40; ++size) {
        for (const std::string_view unit : {"x", "\u00F1", "\u4E2D"}) {
            const std::string start = repeated(unit, size);
            expectOrderOfICU(start + "a", start + "b");
            expectOrderOfICU(start + "a", start);
            expectOrderOfICU(start + "a\u0301", start + "\u00E1");
            expectOrderOfICU(start + "\u212A", start + "K");
            expectOrderOfICU(start + "\u0301", start + "z");
        }
    }
}

TEST(CanonicalText, AFormIsTheTextItselfWhereItIsInThatFormAlready) {
    std::string storage = "left alone";
    for (const std::string_view text : {"", "ascii", "ma\u00F1ana", "\u4E2D\u6587", "\U0001F600", "q\u0323\u0307"}) {
        const std::string_view form = canonical::form(text, storage);
        EXPECT_EQ(form.data(), text.data());
        EXPECT_EQ(form.size(), text.size());
    }
    EXPECT_EQ(storage, "left alone");
}

TEST(CanonicalText, AnyOtherFormIsAViewOfTheStorage) {
    std::string storage = "replaced";
    const std::string_view form = canonical::form("man\u0303ana", storage);
    EXPECT_EQ(form, "ma\u00F1ana");
    EXPECT_EQ(form.data(), storage.data());
    EXPECT_EQ(storage, "ma\u00F1ana");
    EXPECT_EQ(canonical::form("s\u0307\u0323", storage), "\u1E69");
}

TEST(CanonicalText, FormsOrderedByTheirBytesAreOrderedByScalarValue) {
    std::vector<std::string> keys{"\U0001F600", "\uFF61", "man\u0303ana", "ma\u00F1ana a", "manana", "\u212A",
                                  "L",          "J"};
    std::ranges::sort(keys, [](const auto& left, const auto& right) { return canonical::compare(left, right) < 0; });
    std::vector<std::string> forms;
    for (const std::string& key : keys) {
        std::string storage;
        forms.emplace_back(canonical::form(key, storage));
    }
    EXPECT_TRUE(std::ranges::is_sorted(forms));
    EXPECT_EQ(forms, (std::vector<std::string>{"J", "K", "L", "manana", "ma\u00F1ana", "ma\u00F1ana a", "\uFF61",
                                               "\U0001F600"}));
}

} // namespace
} // namespace quelm
