#include "JSONCore/JSONSerializer.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <utility>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;
using test::nodeAt;
using test::parsed;
using test::written;

constexpr JSONStyle compact = JSONStyle::compact();
constexpr JSONStyle twoSpaces = JSONStyle::pretty(Indent::twoSpaces, false);
constexpr JSONStyle fourSpaces = JSONStyle::pretty(Indent::fourSpaces, false);
constexpr JSONStyle tab = JSONStyle::pretty(Indent::tab, false);

std::string inStyle(std::string_view text, const JSONStyle& style) {
    return written(parsed(text), style);
}

/// A tree of one string.
JSONTree stringTree(std::string_view text) {
    return JSONTree(NodeKind::string, text);
}

TEST(JSONSerializer, WritesCompactWithoutAnyWhiteSpace) {
    EXPECT_EQ(inStyle(" { \"a\" : 1 , \"b\" : [ true , null ] , \"c\" : { } } \n", compact),
              R"({"a":1,"b":[true,null],"c":{}})");
}

TEST(JSONSerializer, WritesPrettyOneMemberOrElementALine) {
    EXPECT_EQ(inStyle(R"({"a":1,"b":[true,null],"c":{}})", twoSpaces), "{\n"
                                                                       "  \"a\": 1,\n"
                                                                       "  \"b\": [\n"
                                                                       "    true,\n"
                                                                       "    null\n"
                                                                       "  ],\n"
                                                                       "  \"c\": {}\n"
                                                                       "}\n");
}

TEST(JSONSerializer, IndentsByItsUnitOncePerLevel) {
    constexpr std::string_view text = R"([[[1,{"a":[2]}]]])";
    EXPECT_EQ(inStyle(text, fourSpaces), "[\n"
                                         "    [\n"
                                         "        [\n"
                                         "            1,\n"
                                         "            {\n"
                                         "                \"a\": [\n"
                                         "                    2\n"
                                         "                ]\n"
                                         "            }\n"
                                         "        ]\n"
                                         "    ]\n"
                                         "]\n");
    EXPECT_EQ(inStyle(text, tab), "[\n\t[\n\t\t[\n\t\t\t1,\n\t\t\t{\n\t\t\t\t\"a\": [\n\t\t\t\t\t2\n"
                                  "\t\t\t\t]\n\t\t\t}\n\t\t]\n\t]\n]\n");
}

TEST(JSONSerializer, WritesEmptyContainersAsTwoBrackets) {
    for (const JSONStyle& style : {compact, twoSpaces, fourSpaces, tab}) {
        const std::string end = style.isPretty() ? "\n" : "";
        EXPECT_EQ(inStyle("{ }", style), "{}" + end);
        EXPECT_EQ(inStyle("[ \n ]", style), "[]" + end);
    }
    EXPECT_EQ(inStyle("[[],{},[[]]]", twoSpaces), "[\n  [],\n  {},\n  [\n    []\n  ]\n]\n");
}

TEST(JSONSerializer, EndsPrettyOutputWithOneLineFeed) {
    const struct {
        std::string_view text;
        std::string_view pretty;
    } cases[] = {{"42", "42\n"}, {"\"a\"", "\"a\"\n"}, {"true", "true\n"}, {"null", "null\n"}, {"[1]", "[\n  1\n]\n"}};
    for (const auto& [text, pretty] : cases) {
        EXPECT_EQ(inStyle(text, twoSpaces), pretty);
        EXPECT_EQ(inStyle(text, compact), text);
    }
}

TEST(JSONSerializer, WritesNumbersAndBooleansAsTheTreeHoldsThem) {
    EXPECT_EQ(inStyle("[1.50,1e3,-0,1E+2,12345678901234567890]", compact), "[1.50,1e3,-0,1E+2,12345678901234567890]");
    EXPECT_EQ(written(JSONTree(NodeKind::number, "not a number")), "not a number");
    EXPECT_EQ(written(JSONTree(NodeKind::bool_, "TRUE")), "TRUE");
    EXPECT_EQ(written(JSONTree(NodeKind::number, "")), "");
    EXPECT_EQ(written(JSONTree(NodeKind::number, "1\"\n")), "1\"\n");
}

TEST(JSONSerializer, DoesNotReadTheTextOfNullAndContainers) {
    EXPECT_EQ(written(JSONTree(NodeKind::null, "x")), "null");
    EXPECT_EQ(written(JSONTree(NodeKind::object, "x")), "{}");
    EXPECT_EQ(written(JSONTree(NodeKind::array, "x")), "[]");
}

TEST(JSONSerializer, EscapesWhatMustBeEscapedAndNothingElse) {
    EXPECT_EQ(written(stringTree("\b\t\n\f\r\"\\")), R"("\b\t\n\f\r\"\\")");
    for (int byte = 0; byte < 0x80; ++byte) {
        const auto character = static_cast<char>(byte);
        SCOPED_TRACE(byte);
        std::string expected(1, character);
        if (const auto which = std::string_view("\b\t\n\f\r\"\\").find(character); which != std::string_view::npos)
            expected = std::string("\\") + "btnfr\"\\"[which];
        else if (byte < 0x20)
            expected = std::string("\\u00") + (byte < 0x10 ? "0" : "1") + "0123456789abcdef"[byte % 16];
        EXPECT_EQ(written(stringTree(std::string(1, character))), "\"" + expected + "\"");
        EXPECT_EQ(written(stringTree("a" + std::string(1, character) + "z")), "\"a" + expected + "z\"");
    }
}

TEST(JSONSerializer, WritesControlCharactersWithLowercaseDigits) {
    EXPECT_EQ(written(stringTree(std::string_view("\0\x1F\x7F\x1B\x01", 5))), "\"\\u0000\\u001f\x7F\\u001b\\u0001\"");
}

TEST(JSONSerializer, LeavesOtherTextAsItIs) {
    for (const std::string_view text :
         {"", "a/b", "é", "日本語", "😀", "\u2028\u2029", "\uFEFF", "\u0080\u009F", "\U0010FFFF"})
        EXPECT_EQ(written(stringTree(text)), "\"" + std::string(text) + "\"");
}

TEST(JSONSerializer, WritesStringsOfEveryLengthWithEscapesAnywhere) {
    for (std::size_t length = 0; length < 200; ++length) {
        const std::string plain(length, 'x');
        ASSERT_EQ(written(stringTree(plain)), "\"" + plain + "\"");
        ASSERT_EQ(written(stringTree(plain + "\n")), "\"" + plain + "\\n\"");
        ASSERT_EQ(written(stringTree("\x01" + plain + "\"")), "\"\\u0001" + plain + "\\\"\"");
        ASSERT_EQ(written(stringTree(std::string(length, '\x1F'))), "\"" + test::repeated("\\u001f", length) + "\"");
    }
}

/// Checks that compact texts with the plain text and with a number of that length are written as they were read.
void expectWrittenAsRead(const std::string& plain) {
    const std::string digits(plain.size() + 1, '7');
    const std::string literal = "\"" + plain + "\"";
    ASSERT_EQ(inStyle(literal, compact), literal);
    ASSERT_EQ(inStyle(digits, compact), digits);
    const std::string text =
        "{" + literal + ":[" + digits + "," + literal + "],\"\\t" + plain + "\":\"é" + plain + "\"}";
    ASSERT_EQ(inStyle(text, compact), text);
}

TEST(JSONSerializer, WritesParsedTextsOfEveryLengthAsTheyWere) {
    for (std::size_t length = 0; length < 200; ++length)
        ASSERT_NO_FATAL_FAILURE(expectWrittenAsRead(std::string(length, 'x')));
}

TEST(JSONSerializer, IndentsEveryDepth) {
    for (int depth = 1; depth <= 150; ++depth) {
        for (const JSONStyle& style : {twoSpaces, fourSpaces, tab}) {
            std::string expected;
            const std::string_view unit = JSONStyle::unit(*style.prettyIndent());
            for (int level = 0; level < depth; ++level)
                expected += "[\n" + test::repeated(unit, static_cast<std::size_t>(level) + 1);
            expected += "1\n";
            for (int level = depth - 1; level >= 0; --level)
                expected += test::repeated(unit, static_cast<std::size_t>(level)) + "]\n";
            const auto levels = static_cast<std::size_t>(depth);
            ASSERT_EQ(inStyle(std::string(levels, '[') + "1" + std::string(levels, ']'), style), expected);
        }
    }
}

TEST(JSONSerializer, EscapesKeysLikeStrings) {
    EXPECT_EQ(inStyle(R"({"\"\\\/\n\u0001é":1,"":2})", compact), R"({"\"\\/\n\u0001é":1,"":2})");
    EXPECT_EQ(inStyle(R"({"a\tb":1})", twoSpaces), "{\n  \"a\\tb\": 1\n}\n");
}

TEST(JSONSerializer, WritesOneNodeWithoutItsKeyAtTheFirstLevel) {
    const JSONTree tree = parsed(R"({"a":{"b":[1,{"c":null}]},"d":"x"})");
    EXPECT_EQ(written(tree, nodeAt(tree, {0})), R"({"b":[1,{"c":null}]})");
    EXPECT_EQ(written(tree, nodeAt(tree, {0, 0}), twoSpaces), "[\n  1,\n  {\n    \"c\": null\n  }\n]\n");
    EXPECT_EQ(written(tree, nodeAt(tree, {1}), twoSpaces), "\"x\"\n");
    EXPECT_EQ(written(tree, nodeAt(tree, {0, 0, 1, 0})), "null");
    EXPECT_EQ(written(tree, tree.root()), written(tree));
}

TEST(JSONSerializer, WritesADetachedNode) {
    JSONTree tree = parsed(R"({"a":{"b":[1]},"d":2})");
    const NodeID detached = nodeAt(tree, {0});
    tree.detach(detached);
    EXPECT_EQ(written(tree, detached), R"({"b":[1]})");
    EXPECT_EQ(written(tree), R"({"d":2})");
}

TEST(JSONSerializer, LeavesTheKeysOfElementsOut) {
    JSONTree tree(NodeKind::array);
    tree.attach(tree.addNode(NodeKind::number, "key", "1"), tree.root(), 0);
    EXPECT_EQ(written(tree), "[1]");
    EXPECT_EQ(written(tree, twoSpaces), "[\n  1\n]\n");
}

TEST(JSONSerializer, GivesTheSameAsBytesAndAsText) {
    const JSONTree tree = parsed(R"({"é":["\u0000",1]})");
    for (const JSONStyle& style : {compact, twoSpaces}) {
        const SharedText bytes = JSONSerializer::serialize(tree, std::nullopt, style);
        const TextRope text = JSONSerializer::serializeToString(tree, std::nullopt, style);
        EXPECT_EQ(text.contiguous().view(), bytes.view());
        EXPECT_EQ(JSONSerializer::serializeToString(tree, nodeAt(tree, {0, 1}), style).contiguous().view(),
                  style.isPretty() ? "1\n" : "1");
    }
}

/// What is given piece by piece, and how many pieces.
std::pair<std::string, int> inPieces(const JSONTree& tree, std::optional<NodeID> from, const JSONStyle& style) {
    std::string text;
    int count = 0;
    JSONSerializer::serialize(tree, from, style, [&](std::string_view piece) {
        text += piece;
        ++count;
    });
    return {text, count};
}

TEST(JSONSerializer, GivesTheSameBytesInPieces) {
    const JSONTree small = parsed(R"({"a":["x",1]})");
    for (const JSONStyle& style : {compact, twoSpaces}) {
        EXPECT_EQ(inPieces(small, std::nullopt, style).first, written(small, style));
        EXPECT_EQ(inPieces(small, nodeAt(small, {0}), style).first, written(small, nodeAt(small, {0}), style));
    }
    std::string text = "[0";
    for (int i = 1; i < 300'000; ++i)
        text += ",{\"k\":\"\\n" + std::to_string(i) + "\"}";
    text += ",\"" + std::string(3'000'000, 'x') + "\",\"\\n" + std::string(3'000'000, 'y') + "\"]";
    const JSONTree large = parsed(text);
    for (const JSONStyle& style : {compact, tab, JSONStyle::pretty(Indent::fourSpaces, true)}) {
        const auto [bytes, pieces] = inPieces(large, std::nullopt, style);
        EXPECT_TRUE(bytes == written(large, style));
        EXPECT_GT(pieces, 3);
    }
}

TEST(JSONSerializer, StopsAtWhatTheTakerOfAPieceThrows) {
    const JSONTree tree = parsed("[" + test::repeated("\"0123456789\",", 400'000) + "0]");
    int taken = 0;
    const auto taker = [&](std::string_view) {
        if (++taken == 2)
            throw std::runtime_error("disco lleno");
    };
    EXPECT_THROW(JSONSerializer::serialize(tree, std::nullopt, compact, taker), std::runtime_error);
    EXPECT_EQ(taken, 2);
}

TEST(JSONSerializer, NeverChangesTheTree) {
    const JSONTree tree = parsed(R"({"b":1,"a":[2]})");
    written(tree, JSONStyle::pretty(Indent::tab, true));
    EXPECT_EQ(tree, parsed(R"({"b":1,"a":[2]})"));
    EXPECT_EQ(written(tree), R"({"b":1,"a":[2]})");
}

TEST(JSONSerializerDeathTest, StopsWithoutATopLevelValueOrNode) {
    JSONTree tree(NodeKind::null);
    EXPECT_DEATH(written(tree, NodeID{2}), "programming error");
    EXPECT_DEATH(written(tree, NodeID{-1}), "programming error");
    tree.detach(tree.root());
    EXPECT_DEATH(written(tree), "programming error");
}

} // namespace
} // namespace quelm
