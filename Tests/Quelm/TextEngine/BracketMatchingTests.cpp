#include "Quelm/TextEngine/BracketMatching.h"
#include "TextCore/TextRope.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace quelm {

std::ostream& operator<<(std::ostream& out, const BracketPair& pair) {
    return out << '(' << pair.bracket << ", " << pair.partner << ')';
}

namespace {

TextRope rope(std::string_view bytes) {
    return TextRope::repairing(bytes);
}

/// A text with a bar for the caret.
std::optional<BracketPair> matched(std::string marked) {
    const std::size_t caret = marked.find('|');
    marked.erase(caret, 1);
    return matchingBrackets(rope(marked), QString::fromStdString(marked.substr(0, caret)).size());
}

TEST(BracketMatchingTests, TheBracketBeforeTheCaretIsFirst) {
    EXPECT_EQ(matched("[|[1]]"), (BracketPair{0, 4}));
    EXPECT_EQ(matched("[[1]|]"), (BracketPair{3, 1}));
}

TEST(BracketMatchingTests, OtherwiseTheOneAfterItIsMatched) {
    EXPECT_EQ(matched("|{\"a\": [1]}"), (BracketPair{0, 9}));
    EXPECT_EQ(matched("{\"a\": [1|]}"), (BracketPair{8, 6}));
}

TEST(BracketMatchingTests, TheOneAfterTheCaretIsMatchedWhenTheOneBeforeHasNoPartner) {
    EXPECT_EQ(matched("]|[]"), (BracketPair{1, 2}));
}

TEST(BracketMatchingTests, AwayFromBracketsThereIsNothing) {
    EXPECT_EQ(matched("[1|2]"), std::nullopt);
    EXPECT_EQ(matched("|"), std::nullopt);
    EXPECT_EQ(matched("(|)"), std::nullopt);
}

TEST(BracketMatchingTests, BracketsInStringsAreText) {
    EXPECT_EQ(matched(R"(["[|]"])"), std::nullopt);
    EXPECT_EQ(matched(R"([|"]", "\"]", "\\"])"), (BracketPair{0, 17}));
    EXPECT_EQ(matched(R"(["[", "\"[", "\\"]|)"), (BracketPair{17, 0}));
}

TEST(BracketMatchingTests, AStringEndsWithItsLine) {
    EXPECT_EQ(matched("[|\"open [\n 1]"), (BracketPair{0, 11}));
    EXPECT_EQ(matched("[\"open [\n 1]|"), (BracketPair{11, 0}));
}

TEST(BracketMatchingTests, ABracketOfTheOtherKindIsNoPartner) {
    EXPECT_EQ(matched("[|1}"), std::nullopt);
    EXPECT_EQ(matched("{1]|"), std::nullopt);
}

TEST(BracketMatchingTests, OffsetsAreUnitsOfUTF16) {
    EXPECT_EQ(matched("[|\"ñ😀\"]"), (BracketPair{0, 6}));
    EXPECT_EQ(matched("[\"ñ😀\"]|"), (BracketPair{6, 0}));
}

TEST(BracketMatchingTests, CharactersOfSeveralBytesBesideTheCaretAreNoBrackets) {
    EXPECT_EQ(matched("ñ|😀"), std::nullopt);
    EXPECT_EQ(matched("ñ|[]"), (BracketPair{1, 2}));
}

TEST(BracketMatchingTests, PartnersAreFoundUpToTheLimit) {
    const std::string filling(bracketSearchLimit - 1, ' ');
    const BracketPair near{0, bracketSearchLimit};
    const TextRope within = rope("[" + filling + "]");
    EXPECT_EQ(matchingBrackets(within, 1), near);
    EXPECT_EQ(matchingBrackets(within, within.utf16Count()), (BracketPair{near.partner, near.bracket}));

    const TextRope beyond = rope("[ " + filling + "]");
    EXPECT_EQ(matchingBrackets(beyond, 1), std::nullopt);
    EXPECT_EQ(matchingBrackets(beyond, beyond.utf16Count()), std::nullopt);
}

TEST(BracketMatchingTests, LinesDoNotStopTheSearch) {
    std::string filling;
    while (filling.size() < bracketSearchLimit / 2)
        filling += "  \"clave [\": [true, \"{\"],\n";
    const TextRope text = rope("{" + filling + "}");
    EXPECT_EQ(matchingBrackets(text, 1), (BracketPair{0, text.utf16Count() - 1}));
    EXPECT_EQ(matchingBrackets(text, text.utf16Count()), (BracketPair{text.utf16Count() - 1, 0}));
}

TEST(BracketMatchingTests, InsideOfAnEndlessStringOfEscapedJSONNothingIsABracket) {
    std::string text = "[\"";
    while (text.size() < 3 * bracketSearchLimit)
        text += R"({\"a\": [1, 2]}, )";
    const auto bracket = static_cast<qint64>(text.rfind("[1"));
    EXPECT_EQ(matchingBrackets(rope(text + "\"]"), bracket), std::nullopt);
}

// Random JSON against a scan of the whole from its start.

class RandomJSON {
public:
    explicit RandomJSON(unsigned seed, std::string lineEnd) : random_(seed), lineEnd_(std::move(lineEnd)) {}

    std::string text(std::size_t size) {
        text_ = "[";
        while (text_.size() < size) {
            addValue(0);
            text_ += "," + lineEnd_;
        }
        text_ += "null]";
        return text_;
    }

private:
    int below(int end) { return std::uniform_int_distribution<>(0, end - 1)(random_); }

    void addString() {
        static const std::vector<std::string> pieces{"a", "[", "]", "{", "}", ",", ":", " ", "\\\"", "\\\\", "ñ", "😀"};
        text_ += '"';
        for (int count = below(8); count > 0; --count)
            text_ += pieces[static_cast<std::size_t>(below(static_cast<int>(pieces.size())))];
        text_ += '"';
    }

    void addValue(int depth) {
        const int kind = below(depth < 6 ? 4 : 2);
        if (kind == 0)
            addString();
        else if (kind == 1)
            text_ += std::to_string(below(1000));
        else
            addContainer(kind == 2, depth);
    }

    void addContainer(bool isObject, int depth) {
        text_ += isObject ? '{' : '[';
        const int count = below(5);
        for (int index = 0; index < count; ++index) {
            if (index > 0)
                text_ += "," + lineEnd_;
            if (isObject) {
                addString();
                text_ += below(2) == 0 ? ":" : ": ";
            }
            addValue(depth + 1);
        }
        text_ += isObject ? '}' : ']';
    }

    std::mt19937 random_;
    std::string lineEnd_;
    std::string text_;
};

/// The partner of every unit that is a bracket outside of strings; -1 for all others.
std::vector<qint64> partnersOf(const QString& text) {
    std::vector<qint64> partners(static_cast<std::size_t>(text.size()), -1);
    std::vector<qint64> open;
    bool isInside = false;
    for (qint64 place = 0; place < text.size(); ++place) {
        const QChar unit = text[place];
        if (isInside && unit == u'\\')
            ++place;
        else if (unit == u'"')
            isInside = !isInside;
        else if (!isInside && (unit == u'[' || unit == u'{'))
            open.push_back(place);
        else if (!isInside && (unit == u']' || unit == u'}')) {
            partners[static_cast<std::size_t>(place)] = open.back();
            partners[static_cast<std::size_t>(open.back())] = place;
            open.pop_back();
        }
    }
    return partners;
}

class BracketMatchingModelTests : public testing::TestWithParam<std::string> {
protected:
    /// Checks carets at `step` units from one another.
    static void check(const std::string& json, qint64 step) {
        const TextRope text = rope(json);
        const QString units = QString::fromStdString(json);
        const std::vector<qint64> partners = partnersOf(units);
        const auto expected = [&](qint64 place) -> std::optional<BracketPair> {
            if (place < 0 || place >= units.size() || partners[static_cast<std::size_t>(place)] < 0)
                return std::nullopt;
            const qint64 partner = partners[static_cast<std::size_t>(place)];
            const auto byte = [&](qint64 offset) { return text.summaryBeforeUTF16(offset).bytes; };
            if (std::abs(byte(place) - byte(partner)) > bracketSearchLimit)
                return std::nullopt;
            return BracketPair{place, partner};
        };
        qint64 found = 0;
        for (qint64 caret = 0; caret <= units.size(); caret += step) {
            const bool isWithinPair = caret < units.size() && units[caret].isLowSurrogate();
            if (isWithinPair)
                continue;
            const auto before = expected(caret - 1);
            const auto pair = before ? before : expected(caret);
            ASSERT_EQ(matchingBrackets(text, caret), pair) << "caret " << caret;
            found += pair ? 1 : 0;
        }
        EXPECT_GT(found, 10);
    }
};

TEST_P(BracketMatchingModelTests, SmallTextsMatchAsAScanOfTheWholeDoes) {
    for (unsigned seed = 0; seed < 40; ++seed)
        check(RandomJSON(seed, GetParam()).text(600), 1);
}

TEST_P(BracketMatchingModelTests, LongTextsMatchAsAScanOfTheWholeDoes) {
    for (unsigned seed = 0; seed < 3; ++seed)
        check(RandomJSON(seed, GetParam()).text(4 * bracketSearchLimit), 1009);
}

INSTANTIATE_TEST_SUITE_P(LineEnds, BracketMatchingModelTests, testing::Values("", "\n"), [](const auto& value) {
    return value.param.empty() ? std::string("OneLine") : std::string("ManyLines");
});

} // namespace
} // namespace quelm
