#include "JSONCore/JSONParser.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/mman.h>
#include <thread>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;
using test::repeated;
using test::rope;
using test::written;

TEST(JSONParser, AcceptsAnyValueAtTheTopLevel) {
    const struct {
        std::string_view text;
        NodeKind kind;
        std::string_view scalar;
    } cases[] = {
        {"{}", NodeKind::object, ""},   {"[]", NodeKind::array, ""},         {"\"a\"", NodeKind::string, "a"},
        {"\"\"", NodeKind::string, ""}, {"7", NodeKind::number, "7"},        {"true", NodeKind::bool_, "true"},
        {"null", NodeKind::null, ""},   {"false", NodeKind::bool_, "false"},
    };
    for (const auto& [text, kind, scalar] : cases) {
        SCOPED_TRACE(text);
        const JSONTree tree = parsed(text);
        EXPECT_EQ(tree.kind(tree.root()), kind);
        EXPECT_EQ(tree.scalar(tree.root()), scalar);
        EXPECT_EQ(tree.key(tree.root()), "");
        EXPECT_EQ(tree.parent(tree.root()), JSONTree::holder);
        EXPECT_EQ(tree.nodeCount(), 1);
        EXPECT_EQ(tree.storedNodeCount(), 2);
        tree.checkInvariants();
    }
}

TEST(JSONParser, StoresNodesInDocumentOrder) {
    const JSONTree tree = parsed(R"({"a":1,"b":[true,null,"x"],"c":{"d":{}}})");
    const struct {
        NodeKind kind;
        std::string_view key;
        std::string_view scalar;
        std::int32_t parent;
    } expected[] = {
        {NodeKind::object, "", "", 0},    {NodeKind::number, "a", "1", 1}, {NodeKind::array, "b", "", 1},
        {NodeKind::bool_, "", "true", 3}, {NodeKind::null, "", "", 3},     {NodeKind::string, "", "x", 3},
        {NodeKind::object, "c", "", 1},   {NodeKind::object, "d", "", 7},
    };
    ASSERT_EQ(tree.storedNodeCount(), 9);
    EXPECT_EQ(tree.nodeCount(), 8);
    NodeID id{1};
    for (const auto& node : expected) {
        SCOPED_TRACE(id.raw);
        EXPECT_EQ(tree.kind(id), node.kind);
        EXPECT_EQ(tree.key(id), node.key);
        EXPECT_EQ(tree.scalar(id), node.scalar);
        EXPECT_EQ(tree.parent(id), NodeID{node.parent});
        ++id.raw;
    }
    EXPECT_EQ(tree.kind(JSONTree::holder), NodeKind::array);
    EXPECT_EQ(tree.key(JSONTree::holder), "");
    EXPECT_EQ(tree.scalar(JSONTree::holder), "");
    EXPECT_EQ(tree.parent(JSONTree::holder), std::nullopt);
    EXPECT_THAT(tree.children(JSONTree::holder), testing::ElementsAre(NodeID{1}));
}

TEST(JSONParser, KeepsDuplicateKeysInOrder) {
    const JSONTree tree = parsed(R"({"a":1,"b":2,"a":3})");
    ASSERT_EQ(tree.children(tree.root()).size(), 3);
    EXPECT_EQ(tree.key(nodeAt(tree, {0})), "a");
    EXPECT_EQ(tree.scalar(nodeAt(tree, {0})), "1");
    EXPECT_EQ(tree.key(nodeAt(tree, {2})), "a");
    EXPECT_EQ(tree.scalar(nodeAt(tree, {2})), "3");
}

TEST(JSONParser, SkipsTheFourWhiteSpaceBytesEverywhereBetweenTokens) {
    const std::string white = " \t\n\r";
    std::string text;
    for (const std::string_view token : {"{", "\"a\"", ":", "[", "1", ",", "true", ",", "{", "}", ",", "[", "]", "]",
                                         ",", "\"b\"", ":", "null", "}"}) {
        text += white;
        text += token;
    }
    EXPECT_EQ(written(parsed(text + white)), R"({"a":[1,true,{},[]],"b":null})");
}

TEST(JSONParser, SkipsRunsOfWhiteSpaceOfEveryLength) {
    for (std::size_t length = 0; length < 300; ++length) {
        for (const char white : {' ', '\n', '\t', '\r'}) {
            const std::string run(length, white);
            ASSERT_EQ(written(parsed(run + "[" + run + "1" + run + "," + run + "\"x\"" + run + "]" + run)), "[1,\"x\"]")
                << length;
        }
    }
}

TEST(JSONParser, TakesNothingElseForWhiteSpace) {
    const std::string_view others[] = {"\v", "\f", "\u00A0", "\u0085", "\u2028", "\u2029", "\u3000", "\uFEFF", "\x7F"};
    for (const std::string_view other : others) {
        SCOPED_TRACE(testing::PrintToString(other));
        EXPECT_EQ(test::parseError(" " + std::string(other) + "1").message, "Valor inesperado");
        EXPECT_EQ(test::parseError("1" + std::string(other)).message, "Contenido inesperado después del valor raíz");
        EXPECT_EQ(test::parseError("[1" + std::string(other) + "]").message, "Se esperaba ',' o ']'");
    }
    EXPECT_EQ(test::parseError(std::string_view("\0", 1)).message, "Valor inesperado");
    EXPECT_EQ(test::parseError(std::string_view("1\0", 2)).message, "Contenido inesperado después del valor raíz");
}

TEST(JSONParser, SkipsAByteOrderMarkAtTheStart) {
    EXPECT_EQ(written(parsed("\uFEFF{}")), "{}");
    EXPECT_EQ(written(parsed("\uFEFF \n[1]")), "[1]");
    EXPECT_EQ(written(parsed("\uFEFF0")), "0");
}

TEST(JSONParser, KeepsNumbersAsTheyAreWritten) {
    const std::string_view numbers[] = {
        "0",
        "-0",
        "1",
        "-1",
        "10",
        "1234567890",
        "0.0",
        "0.5",
        "-0.5",
        "1.50",
        "0.5e-3",
        "1E+2",
        "1e2",
        "1E2",
        "1e+2",
        "1e-2",
        "0e0",
        "0E-00",
        "-0.0e+000",
        "1e00007",
        "123.456E7",
        "1e999999",
        "123456789012345678901234567890",
        "0.1000000000000000055511151231257827021181583404541015625",
    };
    for (const std::string_view number : numbers) {
        SCOPED_TRACE(number);
        const JSONTree tree = parsed(number);
        EXPECT_EQ(tree.kind(tree.root()), NodeKind::number);
        EXPECT_EQ(tree.scalar(tree.root()), number);
        EXPECT_EQ(written(parsed("[" + std::string(number) + "]")), "[" + std::string(number) + "]");
        EXPECT_EQ(written(parsed("{\"n\":" + std::string(number) + "\n}")), "{\"n\":" + std::string(number) + "}");
    }
}

TEST(JSONParser, KeepsNumbersOfAnyLength) {
    for (std::size_t length = 1; length < 200; ++length) {
        const std::string digits(length, '7');
        const std::string number = digits + "." + digits + "e" + digits;
        ASSERT_EQ(written(parsed("[" + number + "," + digits + "]")), "[" + number + "," + digits + "]");
    }
    const std::string million(1'000'000, '3');
    const JSONTree tree = parsed(million);
    EXPECT_EQ(tree.scalar(tree.root()), million);
}

TEST(JSONParser, ReadsNothingBeyondASliceOfALargerText) {
    const SharedText whole(std::string_view("[123456,true]x"));
    const auto parsedSlice = [&](std::size_t position, std::size_t count) {
        return JSONParser::parse(TextRope(whole.slice(position, count)));
    };
    EXPECT_EQ(written(*parsedSlice(0, 13)), "[123456,true]");
    EXPECT_EQ(written(*parsedSlice(1, 3)), "123");
    EXPECT_EQ(written(*parsedSlice(8, 4)), "true");
    EXPECT_EQ(parsedSlice(0, 7).error().message, "Falta ']' para cerrar el arreglo");
    EXPECT_EQ(parsedSlice(8, 3).error().message, "Valor inesperado");
    EXPECT_EQ(parsedSlice(3, 0).error().message, "Se esperaba un valor");
}

TEST(JSONParser, SharesTheMemoryOfTheText) {
    const TextRope text = rope(R"({"clave":"un texto","otra":[12345,true]})");
    const std::string_view memory = text.contiguous().view();
    const auto isInMemory = [&](std::string_view part) {
        return part.data() >= memory.data() && part.data() + part.size() <= memory.data() + memory.size();
    };
    ASSERT_TRUE(text.contiguous().isSamePiece(text.contiguous())) << "the rope is one padded piece";
    const auto tree = JSONParser::parse(text);
    ASSERT_TRUE(tree);
    EXPECT_TRUE(isInMemory(tree->key(nodeAt(*tree, {0}))));
    EXPECT_TRUE(isInMemory(tree->scalar(nodeAt(*tree, {0}))));
    EXPECT_TRUE(isInMemory(tree->key(nodeAt(*tree, {1}))));
    EXPECT_TRUE(isInMemory(tree->scalar(nodeAt(*tree, {1, 0}))));
}

TEST(JSONParser, GivesATreeThatOutlivesTheText) {
    auto text = std::make_unique<TextRope>(rope(R"({"clave":"un texto que no cabe en ningún sitio","\u0041":[1]})"));
    const auto tree = JSONParser::parse(*text);
    text.reset();
    ASSERT_TRUE(tree);
    EXPECT_EQ(written(*tree), R"({"clave":"un texto que no cabe en ningún sitio","A":[1]})");
}

TEST(JSONParser, ParsesOnSeveralThreadsAtOnce) {
    std::string text = "[0";
    for (int i = 1; i < 20'000; ++i)
        text += ",{\"k\\n\":" + std::to_string(i) + "}";
    text += "]";
    const TextRope shared = rope(text);
    const JSONTree expected = parsed(text);
    std::vector<int> equal(4, 0);
    {
        std::vector<std::jthread> threads;
        for (int& result : equal)
            threads.emplace_back([&] { result = JSONParser::parse(shared) == expected; });
    }
    EXPECT_THAT(equal, testing::Each(1));
}

TEST(JSONParser, RefusesATextLongerThanATreeCanAddress) {
    // Addresses without memory behind them: the length alone decides.
    const auto size = static_cast<std::size_t>(JSONParser::maximumTextSize) + 1;
    void* const memory = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    const std::shared_ptr<const void> owner(memory, [size](void* bytes) { munmap(bytes, size); });
    const TextRope text(SharedText(owner, std::string_view(static_cast<const char*>(memory), size)));
    const auto tree = JSONParser::parse(text);
    ASSERT_FALSE(tree);
    EXPECT_EQ(tree.error(), JSONParseError::tooLarge());
}

} // namespace
} // namespace quelm
