#include "Quelm/TextEditor/SyntaxDivider.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {
namespace {

/// The parts of a text, with a question mark after those that are not settled,
/// and what is left in the end.
std::vector<std::string> parts(std::string_view text, SyntaxDivider::Lengths lengths = {1, 100}) {
    const TextRope rope = TextRope::repairing(text);
    SyntaxDivider divider(rope, {0, rope.byteCount()}, lengths);
    std::vector<std::string> found;
    std::int64_t place = 0;
    while (const auto part = divider.next()) {
        EXPECT_EQ(part->bytes.location, place);
        place = part->bytes.end();
        found.push_back(rope.bytes(part->bytes) + (part->isSettled ? "" : "?"));
    }
    found.push_back(rope.bytes(ByteRange::between(place, rope.byteCount())));
    return found;
}

using Parts = std::vector<std::string>;

TEST(SyntaxDivider, DividesAfterPunctuation) {
    EXPECT_EQ(parts("[1,{true"), (Parts{"[", "1,{", "true"}));
    EXPECT_EQ(parts("[[ ]]a"), (Parts{"[[", " ]]", "a"}));
}

TEST(SyntaxDivider, DividesBeforeStringsAndNumbersUnlessTheyGoOnWithWhatIsBefore) {
    EXPECT_EQ(parts("a\"b\"c\"d\""), (Parts{"a", "\"b\"c", "\"d\""}));
    EXPECT_EQ(parts("1 -2"), (Parts{"1 ", "-2"}));
    EXPECT_EQ(parts("1E-2+3"), (Parts{"1E-2+3"}));
    EXPECT_EQ(parts("a1"), (Parts{"a1"}));
    EXPECT_EQ(parts("\"a\"\"b\""), (Parts{"\"a\"\"b\""})) << "both are of one colour";
}

TEST(SyntaxDivider, NeverDividesAKeyFromItsColon) {
    EXPECT_EQ(parts("\"a\"  : 1"), (Parts{"\"a\"  :", " ", "1"}));
    EXPECT_EQ(parts("\"a\"  1"), (Parts{"\"a\"  ", "1"}));
}

TEST(SyntaxDivider, NeverDividesStrings) {
    EXPECT_EQ(parts("\"a,1, \\\",2\",3"), (Parts{"\"a,1, \\\",2\",", "3"}));
    EXPECT_EQ(parts("\"\\\\\",3"), (Parts{"\"\\\\\",", "3"}));
    EXPECT_EQ(parts("\"a, 1, 2"), (Parts{"\"a, 1, 2"}));
}

TEST(SyntaxDivider, AStringWithALineFeedIsNotSettled) {
    EXPECT_EQ(parts("\"a\n,1,2"), (Parts{"\"a\n,?", "1,", "2"}));
    EXPECT_EQ(parts("\"a\\\nb\",1,2"), (Parts{"\"a\\\nb\",?", "1,", "2"}));
    EXPECT_EQ(parts("\n,1\n,2"), (Parts{"\n,", "1\n,", "2"})) << "outside of strings it is a blank";
}

TEST(SyntaxDivider, PartsHaveTheLeastLengthAndEndSoonAfter) {
    EXPECT_EQ(parts("[10,20,30,40]", {5, 100}), (Parts{"[10,20,", "30,40]"}));
}

TEST(SyntaxDivider, StopsWhereAPartWouldBeTooLong) {
    EXPECT_EQ(parts("1,2,\"abcdefgh\",3,4", {1, 10}), (Parts{"1,", "2,", "\"abcdefgh\",3,4"}));
    EXPECT_EQ(parts("1,2,\"abcdefgh\",3,4", {1, 12}), (Parts{"1,", "2,", "\"abcdefgh\",", "3,", "4"}));
}

TEST(SyntaxDivider, KnowsStringsWhereverThePiecesOfTheTextBeginAndEnd) {
    for (std::size_t length = 0; length < 200; ++length)
        for (const std::string_view string : {"\"a,1\"", "\"\\\",1\"", "\"\\\\\"", "\"ab\n"}) {
            // The string begins at any place in what is looked at together, and is
            // followed by a long one.
            const std::string before = std::string(5000 + length, ' ') + std::string(string) + ",";
            const std::string after = "7 \"" + std::string(length + 5000, 'x') + ",1\",";
            const bool isSettled = string.back() != '\n';
            ASSERT_EQ(parts(before + after + "8", {static_cast<std::int64_t>(5001 + length), 100'000}),
                      (Parts{before + (isSettled ? "" : "?"), after, "8"}))
                << length << string;
        }
}

} // namespace
} // namespace quelm
