#include "Quelm/TextEditor/SyntaxScanner.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {
namespace {

constexpr TextAttributes key{ColorRole::purple};
constexpr TextAttributes string{ColorRole::green};
constexpr TextAttributes number{ColorRole::blue};
constexpr TextAttributes punctuation{ColorRole::secondaryText};

TextRope rope(std::string_view text) {
    return TextRope::repairing(text);
}

std::vector<AttributeRun> finished(AttributeRunsBuilder& builder) {
    const AttributeRuns made = builder.finish();
    std::vector<AttributeRun> runs;
    made.forEach({0, made.length()}, [&](const AttributeRuns::PlacedRun& placed) { runs.push_back(placed.run); });
    return runs;
}

std::vector<AttributeRun> scanned(std::string_view text) {
    const TextRope whole = rope(text);
    SyntaxScanner scanner(whole, {0, whole.utf16Count()});
    AttributeRunsBuilder runs;
    scanner.scan(whole.utf16Count(), runs);
    EXPECT_EQ(scanner.offset(), whole.utf16Count());
    return finished(runs);
}

TEST(SyntaxScanner, StopsAtTheFirstPlaceBetweenTokensFromItsTargetOn) {
    SyntaxScanner scanner(rope("123 \"abc\" 4"), {0, 11});
    AttributeRunsBuilder runs;
    scanner.scan(1, runs);
    EXPECT_EQ(scanner.offset(), 3);
    scanner.scan(3, runs);
    EXPECT_EQ(scanner.offset(), 3);
    scanner.scan(5, runs);
    EXPECT_EQ(scanner.offset(), 9);
    EXPECT_EQ(finished(runs), (std::vector<AttributeRun>{{3, number, true}, {1, {}, true}, {5, string, true}}));
}

TEST(SyntaxScanner, GoesOnWhereItIsMovedTo) {
    SyntaxScanner scanner(rope("\"\u00F1\U0001F600\" 12"), {0, 8});
    AttributeRunsBuilder runs;
    scanner.moveTo(6);
    scanner.scan(8, runs);
    EXPECT_EQ(finished(runs), (std::vector<AttributeRun>{{2, number, true}}));
    scanner.moveTo(0);
    scanner.scan(1, runs);
    EXPECT_EQ(finished(runs), (std::vector<AttributeRun>{{5, string, true}}));
}

TEST(SyntaxScanner, SeesNothingBeyondItsLines) {
    SyntaxScanner scanner(rope("\"a\\\nb\" : 1"), {0, 4});
    AttributeRunsBuilder runs;
    scanner.scan(4, runs);
    EXPECT_EQ(scanner.offset(), 4);
    EXPECT_EQ(finished(runs), (std::vector<AttributeRun>{{4, string, false}}));
}

TEST(SyntaxScanner, AStringWithALineFeedIsNotSettled) {
    EXPECT_EQ(scanned("\"a\n\"b\""), (std::vector<AttributeRun>{{3, string, false}, {3, string, true}}));
    EXPECT_EQ(scanned("\"a\\\n\":"), (std::vector<AttributeRun>{{5, key, false}, {1, punctuation, true}}));
    EXPECT_EQ(scanned("\"a"), (std::vector<AttributeRun>{{2, string, true}})) << "an open string, but no line feed";
}

TEST(SyntaxScanner, TokensAreWholeWhereverThePiecesOfTheTextBeginAndEnd) {
    const std::string token = "\"\\\"\u20AC\" \t:-1.5e3,null";
    const std::vector<AttributeRun> alone = scanned(token);
    ASSERT_EQ(alone.size(), 6u);
    for (std::size_t blanks = 4060; blanks < 4110; ++blanks) {
        const std::vector<AttributeRun> runs = scanned(std::string(blanks, ' ') + token + std::string(9000, ' '));
        ASSERT_EQ(runs.size(), 8u) << blanks;
        for (std::size_t i = 0; i < alone.size(); ++i)
            ASSERT_EQ(runs[i + 1], alone[i]) << blanks;
    }
}

TEST(SyntaxScanner, ReadsLittleForALittleScanAndALongTextOnce) {
    std::string text;
    while (text.size() < 1'000'000)
        text += "[12, null]";
    SyntaxScanner scanner(rope(text), {0, 1'000'000});
    AttributeRunsBuilder runs;
    scanner.scan(100, runs);
    EXPECT_LE(scanner.bytesRead(), 5000);
    scanner.scan(1'000'000, runs);
    EXPECT_LE(scanner.bytesRead(), 1'010'000);
}

} // namespace
} // namespace quelm
