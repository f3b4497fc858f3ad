#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONScalar.h"
#include "Tests/JSONCore/Models/NaiveParser.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"
#include "Tests/JSONCore/Support/RandomJSON.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

using test::naiveParse;
using test::Random;

/// Fails the test unless the parser gives the same nodes, or the same error, as the check a byte at a time.
void expectParsedAlike(const std::string& text) {
    const auto expected = naiveParse(text);
    const auto tree = JSONParser::parse(test::rope(text));
    ASSERT_EQ(tree.has_value(), expected.has_value()) << testing::PrintToString(text) << "\n"
                                                      << (tree ? expected.error() : tree.error()).errorDescription();
    if (tree) {
        test::expectSameNodes(*tree, *expected);
        ASSERT_NO_FATAL_FAILURE(tree->checkInvariants());
    } else {
        ASSERT_EQ(tree.error(), expected.error()) << testing::PrintToString(text);
    }
}

/// Calls `body` with every text of `length` pieces.
void forEveryText(std::span<const std::string_view> pieces, int length,
                  const std::function<void(const std::string&)>& body) {
    std::vector<std::size_t> which(static_cast<std::size_t>(length), 0);
    for (;;) {
        std::string text;
        for (const std::size_t piece : which)
            text += pieces[piece];
        body(text);
        if (testing::Test::HasFatalFailure())
            return;
        std::size_t place = 0;
        while (place < which.size() && ++which[place] == pieces.size())
            which[place++] = 0;
        if (place == which.size())
            return;
    }
}

TEST(JSONParserModel, AgreesOnEveryShortTextOfBrackets) {
    constexpr std::string_view pieces[] = {"{", "}", "[", "]", ",", ":", "\"a\"", "1", " "};
    for (int length = 1; length <= 5; ++length)
        forEveryText(pieces, length, expectParsedAlike);
}

TEST(JSONParserModel, AgreesOnEveryShortNumber) {
    constexpr std::string_view pieces[] = {"-", "+", ".", "0", "7", "e", "E"};
    for (int length = 1; length <= 5; ++length) {
        forEveryText(pieces, length, [](const std::string& text) {
            expectParsedAlike(text);
            const auto expected = naiveParse(text);
            ASSERT_EQ(JSONScalar::isValid(text, NodeKind::number), expected.has_value()) << text;
        });
    }
}

TEST(JSONParserModel, AgreesOnEveryShortString) {
    constexpr std::string_view pieces[] = {"\"", "\\", "u", "00", "e9", "D8", "DC", "\n", "é", "n"};
    for (int length = 1; length <= 5; ++length)
        forEveryText(pieces, length, [](const std::string& text) { expectParsedAlike("\"" + text); });
}

TEST(JSONParserModel, AgreesOnEveryShortEscape) {
    constexpr std::string_view pieces[] = {"\\u", "D83D", "DE00", "0041", "F", "\"", "]"};
    for (int length = 1; length <= 5; ++length)
        forEveryText(pieces, length, [](const std::string& text) { expectParsedAlike("[\"x" + text); });
}

TEST(JSONParserModel, AgreesOnEveryBeginningOfALiteralAndWhatMayFollowIt) {
    for (const std::string_view word : {"true", "false", "null"}) {
        for (std::size_t length = 1; length <= word.size(); ++length) {
            for (int byte = 0; byte < 0x80; ++byte) {
                const std::string text = std::string(word.substr(0, length)) + static_cast<char>(byte);
                ASSERT_NO_FATAL_FAILURE(expectParsedAlike(text));
                ASSERT_NO_FATAL_FAILURE(expectParsedAlike("[" + text + "]"));
                ASSERT_NO_FATAL_FAILURE(expectParsedAlike("{\"a\":" + text));
            }
        }
    }
}

TEST(JSONParserModel, AgreesOnRandomTexts) {
    test::forEachRound(2'000, [](Random& random) {
        for (int i = 0; i < 5; ++i) {
            const std::string text = test::randomJSON(random, {1 + random.below(200), 1 + random.below(40), true});
            ASSERT_NO_FATAL_FAILURE(expectParsedAlike(text));
            ASSERT_TRUE(naiveParse(text));
        }
    });
}

TEST(JSONParserModel, AgreesOnMutatedTexts) {
    test::forEachRound(2'000, [](Random& random) {
        const std::string text = test::randomJSON(random, {1 + random.below(60), 1 + random.below(12), true});
        for (int i = 0; i < 25; ++i)
            ASSERT_NO_FATAL_FAILURE(expectParsedAlike(test::mutated(text, random)));
    });
}

TEST(JSONParserModel, AgreesOnEveryBeginningOfAText) {
    test::forEachRound(6, [](Random& random) {
        const std::string text = test::randomJSON(random, {40, 8, true});
        for (std::size_t length = 0; length < text.size(); ++length) {
            const std::string beginning = text.substr(0, length);
            if (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
                continue;
            ASSERT_NO_FATAL_FAILURE(expectParsedAlike(beginning));
        }
    });
}

TEST(JSONParserModel, AgreesOnTextsWithAByteOrderMark) {
    test::forEachRound(50, [](Random& random) {
        const std::string text = "\uFEFF" + test::randomJSON(random, {20, 6, true});
        ASSERT_NO_FATAL_FAILURE(expectParsedAlike(text));
        ASSERT_NO_FATAL_FAILURE(expectParsedAlike(test::mutated(text, random)));
    });
}

TEST(JSONParserModel, AgreesOnLargeTexts) {
    test::forEachRound(4, [](Random& random) {
        const std::string text = test::randomJSON(random, {60'000, random.oneIn(2) ? 40'000 : 300, random.oneIn(2)});
        ASSERT_NO_FATAL_FAILURE(expectParsedAlike(text));
        ASSERT_NO_FATAL_FAILURE(expectParsedAlike(test::mutated(text, random)));
    });
}

} // namespace
} // namespace quelm
