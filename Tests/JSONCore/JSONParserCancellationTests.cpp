#include "JSONCore/JSONParser.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::repeated;

constexpr auto interval = static_cast<std::size_t>(JSONParser::cancellationInterval);

/// What a parse gives whose task was cancelled before it began.
auto parseCancelled(const std::string& text) {
    std::stop_source source;
    source.request_stop();
    return JSONParser::parse(test::rope(text), source.get_token());
}

/// An array of a string and a 1, the comma's end at that offset.
std::string arrayWithValueAfter(std::size_t offset) {
    return "[\"" + std::string(offset - 4, 'x') + "\",1]";
}

TEST(JSONParserCancellation, LooksOnceEveryMebibyte) {
    EXPECT_EQ(JSONParser::cancellationInterval, 1'048'576);
}

TEST(JSONParserCancellation, AShortTextIsParsedAllTheSame) {
    EXPECT_TRUE(parseCancelled("{}"));
    std::string text = "[" + repeated("1,", interval / 2 - 2) + "1]";
    ASSERT_EQ(text.size(), interval - 1);
    EXPECT_TRUE(parseCancelled(text));
}

TEST(JSONParserCancellation, ALongTextEndsWithTheCancellationError) {
    const auto tree = parseCancelled("[" + repeated("1,", 3 * interval / 2) + "1]");
    ASSERT_FALSE(tree);
    EXPECT_EQ(tree.error(), JSONParseError::cancelled());
}

TEST(JSONParserCancellation, LooksAtTheFirstValueThatStartsAtTheIntervalOrLater) {
    EXPECT_TRUE(parseCancelled(arrayWithValueAfter(interval - 1)));
    EXPECT_FALSE(parseCancelled(arrayWithValueAfter(interval)));
    EXPECT_FALSE(parseCancelled(arrayWithValueAfter(interval + 1)));
}

TEST(JSONParserCancellation, NeverLooksInsideAValue) {
    EXPECT_TRUE(parseCancelled("\"" + std::string(3 * interval, 'x') + "\""));
    EXPECT_TRUE(parseCancelled(std::string(3 * interval, '7')));
    EXPECT_TRUE(parseCancelled("[1" + std::string(3 * interval, ' ') + "]"));
    EXPECT_TRUE(parseCancelled("{\"" + std::string(interval / 2, 'x') + "\":1}"));
}

TEST(JSONParserCancellation, LooksBeforeTheWhiteSpaceInFrontOfAValue) {
    const std::string white(2 * interval, ' ');
    EXPECT_TRUE(parseCancelled(white + "1"));
    EXPECT_TRUE(parseCancelled("[1," + white + "1]"));
    EXPECT_TRUE(parseCancelled("{\"a\":" + white + "1}"));
    // The white space after an opening bracket is skipped first, to see whether the container is empty.
    EXPECT_FALSE(parseCancelled("[" + white + "1]"));
    EXPECT_TRUE(parseCancelled("[" + white + "]"));
}

TEST(JSONParserCancellation, LooksAtTheValueOfALongKey) {
    EXPECT_FALSE(parseCancelled("{\"" + std::string(interval, 'x') + "\":1}"));
}

TEST(JSONParserCancellation, AnEarlierErrorComesFirstAndALaterOneIsNotReached) {
    const std::string ones = repeated("1,", interval);
    const auto early = parseCancelled("[x," + ones + "1]");
    ASSERT_FALSE(early);
    EXPECT_EQ(early.error(), (JSONParseError{"Valor inesperado", 1, 1, 2}));
    const auto late = parseCancelled("[" + ones + "x]");
    ASSERT_FALSE(late);
    EXPECT_EQ(late.error(), JSONParseError::cancelled());
}

TEST(JSONParserCancellation, LooksAtAPlaceThatIsExactlyTheInterval) {
    std::string text = "[" + std::string(interval - 2, ' ');
    text.insert(1, "1");
    text.resize(interval - 1);
    text += ',';
    ASSERT_EQ(text.size(), static_cast<std::size_t>(interval));
    const auto atTheEnd = parseCancelled(text); // the value that is missing would start there
    ASSERT_FALSE(atTheEnd);
    EXPECT_EQ(atTheEnd.error(), JSONParseError::cancelled());
}

TEST(JSONParserCancellation, WithoutARequestLongTextsAreParsedWhole) {
    std::stop_source source;
    const auto tree = JSONParser::parse(test::rope("[" + repeated("1,", 2 * interval) + "1]"), source.get_token());
    ASSERT_TRUE(tree);
    EXPECT_EQ(tree->nodeCount(), 2'097'154);
}

} // namespace
} // namespace quelm
