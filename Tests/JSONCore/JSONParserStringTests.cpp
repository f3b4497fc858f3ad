#include "JSONCore/JSONParser.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"
#include "TextCore/UTF8.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using test::parsed;
using test::parseError;

/// What a string literal, quotation marks included, means.
std::string decoded(std::string_view literal) {
    const JSONTree tree = parsed(literal);
    EXPECT_EQ(tree.kind(tree.root()), NodeKind::string);
    return std::string(tree.scalar(tree.root()));
}

TEST(JSONParserStrings, EveryEscapeOfTheTableHasItsMeaning) {
    EXPECT_EQ(decoded(R"("\"")"), "\"");
    EXPECT_EQ(decoded(R"("\\")"), "\\");
    EXPECT_EQ(decoded(R"("\/")"), "/");
    EXPECT_EQ(decoded(R"("\b")"), "\b");
    EXPECT_EQ(decoded(R"("\f")"), "\f");
    EXPECT_EQ(decoded(R"("\n")"), "\n");
    EXPECT_EQ(decoded(R"("\r")"), "\r");
    EXPECT_EQ(decoded(R"("\t")"), "\t");
    EXPECT_EQ(decoded(R"("a\\\"\/\b\f\n\r\tz")"), "a\\\"/\b\f\n\r\tz");
}

TEST(JSONParserStrings, AnyOtherEscapeIsAnErrorAtTheBackslash) {
    for (int byte = 0; byte < 0x80; ++byte) {
        const auto letter = static_cast<char>(byte);
        if (std::string_view("\"\\/bfnrtu").find(letter) != std::string_view::npos)
            continue;
        SCOPED_TRACE(byte);
        const std::string text = "[\"a\\" + std::string(1, letter) + "\"]";
        EXPECT_EQ(parseError(text), (JSONParseError{"Secuencia de escape inválida", 3, 1, 4}));
    }
    EXPECT_EQ(parseError("\"\\q\""), (JSONParseError{"Secuencia de escape inválida", 1, 1, 2}));
    EXPECT_EQ(parseError("\"\\é\""), (JSONParseError{"Secuencia de escape inválida", 1, 1, 2}));
    EXPECT_EQ(parseError("\"\\U0041\""), (JSONParseError{"Secuencia de escape inválida", 1, 1, 2}));
}

TEST(JSONParserStrings, UnicodeEscapesTakeDigitsOfEitherCase) {
    EXPECT_EQ(decoded(R"("\u0041")"), "A");
    EXPECT_EQ(decoded(R"("\u00e9\u00E9")"), "éé");
    EXPECT_EQ(decoded(R"("\uabcd\uABCD\uaBcD")"), "\uABCD\uABCD\uABCD");
    EXPECT_EQ(decoded(R"("\u20AC")"), "€");
    EXPECT_EQ(decoded(R"("\uFFFF\uFFFE\uFFFD")"), "\uFFFF\uFFFE\uFFFD");
    EXPECT_EQ(decoded(R"("\uFEFF")"), "\uFEFF");
    EXPECT_EQ(decoded(R"("\u00411")"), "A1");
}

TEST(JSONParserStrings, UnicodeEscapesYieldEveryScalarOfOneUnit) {
    for (char32_t scalar = 0; scalar <= 0xFFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF)
            continue;
        char literal[16];
        std::snprintf(literal, sizeof literal, "\"\\u%04x\"", static_cast<unsigned>(scalar));
        std::string expected;
        utf8::append(expected, scalar);
        ASSERT_EQ(decoded(literal), expected);
    }
}

TEST(JSONParserStrings, AnEscapedNULIsACharacterLikeAnyOther) {
    EXPECT_EQ(decoded(R"("\u0000")"), std::string(1, '\0'));
    EXPECT_EQ(decoded(R"("a\u0000b")"), std::string("a\0b", 3));
    const JSONTree tree = parsed(R"({"a\u0000":1})");
    EXPECT_EQ(tree.key(test::nodeAt(tree, {0})), std::string_view("a\0", 2));
}

TEST(JSONParserStrings, SurrogatePairsYieldOneScalar) {
    EXPECT_EQ(decoded(R"("\uD83D\uDE00")"), "😀");
    EXPECT_EQ(decoded(R"("\ud83d\ude00")"), "😀");
    EXPECT_EQ(decoded(R"("\uD800\uDC00")"), "\U00010000");
    EXPECT_EQ(decoded(R"("\uDBFF\uDFFF")"), "\U0010FFFF");
    EXPECT_EQ(decoded(R"("x\uD83D\uDE00\uD83D\uDE00y")"), "x😀😀y");
}

struct Faulty {
    std::string_view text;
    std::string_view message;
    std::int64_t offset;
};

void expectFaults(std::initializer_list<Faulty> cases) {
    for (const auto& [text, message, offset] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(parseError(text), (JSONParseError{std::string(message), offset, 1, offset + 1}));
    }
}

TEST(JSONParserStrings, ASurrogateWithoutItsPairIsAnErrorAtItsBackslash) {
    constexpr std::string_view message = "Surrogate UTF-16 sin pareja";
    expectFaults({
        {R"("\uDE00")", message, 1},
        {R"("\uDC00")", message, 1},
        {R"("\uDFFF")", message, 1},
        {R"("\uD83D")", message, 1},
        {R"("\uD83Dx")", message, 1},
        {R"("\uD83D\n")", message, 1},
        {R"("\uD83D\")", message, 1},
        {R"("\uD83D\)", message, 1},
        {R"("\uD83Du")", message, 1},
        {R"("\uD83D)", message, 1},
        {R"("ab\uDE00")", message, 3},
        {R"("\uD83D\uDE00\uDE00")", message, 13},
        {R"({"\uD83D":1})", message, 2},
    });
}

TEST(JSONParserStrings, AHighSurrogateBeforeAnotherEscapeIsAnErrorAtItsBackslash) {
    constexpr std::string_view message = "Surrogate UTF-16 inválido";
    expectFaults({
        {R"("\uD83D\u0041")", message, 1},
        {R"("\uD83D\uD83D")", message, 1},
        {R"("\uDBFF\uE000")", message, 1},
        {R"("\uD800\uDBFF")", message, 1},
        {R"("ab\uD83D\u0041")", message, 3},
    });
}

TEST(JSONParserStrings, FewerThanFourBytesAfterAUnicodeEscapeAreAnErrorAtTheFirst) {
    constexpr std::string_view message = "Escape \\u incompleto";
    expectFaults({
        {R"("\u)", message, 3},
        {R"("\u")", message, 3},
        {R"("\u1)", message, 3},
        {R"("\u12")", message, 3},
        {R"("\u123)", message, 3},
        {R"("\uzz")", message, 3},
        {R"(["\u1])", message, 4},
        {R"("\uD83D\u)", message, 9},
        {R"("\uD83D\uDE0)", message, 9},
    });
}

TEST(JSONParserStrings, ABadDigitIsAnErrorAtTheFirstOfTheFour) {
    constexpr std::string_view message = "Dígito hexadecimal inválido en escape \\u";
    expectFaults({
        {R"("\u12zz")", message, 3},
        {R"("\u123g")", message, 3},
        {R"("\ug123")", message, 3},
        {R"("\u123")", message, 3},
        {R"("\u 123")", message, 3},
        {R"("\u+123")", message, 3},
        {R"("\u0x1F")", message, 3},
        {R"("\u12é")", message, 3},
        {R"("\u1é")", message, 3},
        // Four bytes remain, though not in the string.
        {R"(["\u12"])", message, 4},
        {R"("\uD83D\uDEzz")", message, 9},
        {R"("\uD83D\uzzzz")", message, 9},
    });
    EXPECT_EQ(parseError("\"\\u12\n4\"").message, message);
    EXPECT_EQ(parseError(std::string_view("\"\\u12\0\0\"", 8)).message, message);
}

TEST(JSONParserStrings, AControlCharacterIsAnErrorWhereItStands) {
    for (int byte = 0; byte < 0x20; ++byte) {
        SCOPED_TRACE(byte);
        const std::string control(1, static_cast<char>(byte));
        constexpr std::string_view message = "Carácter de control sin escapar dentro de un texto";
        EXPECT_EQ(parseError("\"ab" + control + "c\""), (JSONParseError{std::string(message), 3, 1, 4}));
        EXPECT_EQ(parseError("\"a\\n" + control + "c\""), (JSONParseError{std::string(message), 4, 1, 5}));
        EXPECT_EQ(parseError("\"" + control), (JSONParseError{std::string(message), 1, 1, 2}));
        EXPECT_EQ(parseError("{\"a" + control + "\":1}"), (JSONParseError{std::string(message), 3, 1, 4}));
    }
}

TEST(JSONParserStrings, EverythingFromTheSpaceOnStandsForItself) {
    std::string all;
    for (int byte = 0x20; byte < 0x80; ++byte) {
        if (byte != '"' && byte != '\\')
            all += static_cast<char>(byte);
    }
    all += "é€😀\u0080\uFFFF\U0010FFFF\uFEFF\u2028";
    EXPECT_EQ(decoded("\"" + all + "\""), all);
    EXPECT_EQ(decoded("\"\\n" + all + "\""), "\n" + all);
    EXPECT_EQ(decoded("\"\x7F\""), "\x7F");
}

TEST(JSONParserStrings, AnOpenStringIsAnErrorAtItsQuotationMark) {
    constexpr std::string_view message = "Texto sin cerrar";
    expectFaults({
        {"\"", message, 0},
        {"\"abc", message, 0},
        {"\"abc\\", message, 0},
        {"\"a\\n", message, 0},
        {"\"a\\\"", message, 0},
        {"\"a\\n\\", message, 0},
        {"[1, \"abc]", message, 4},
        {"{\"a", message, 1},
        {"{\"a\":\"", message, 5},
    });
    EXPECT_EQ(parseError("[\n1,\n  \"abc"), (JSONParseError{"Texto sin cerrar", 7, 3, 3}));
}

/// Checks the plain text as a literal, with an escape and with a fault before, behind and within.
void expectReadAlike(const std::string& plain) {
    ASSERT_EQ(decoded("\"" + plain + "\""), plain);
    ASSERT_EQ(decoded("\"" + plain + "\\t\""), plain + "\t");
    ASSERT_EQ(decoded("\"\\t" + plain + "\""), "\t" + plain);
    ASSERT_EQ(decoded("\"" + plain + "é" + plain + "\""), plain + "é" + plain);
    const auto end = static_cast<std::int64_t>(plain.size());
    ASSERT_EQ(parseError("\"" + plain + "\x1F" + plain + "\"").offset, end + 1);
    ASSERT_EQ(parseError("\"" + plain + "\\x" + plain + "\"").offset, end + 1);
    ASSERT_EQ(parseError("\"" + plain).offset, 0);
    ASSERT_EQ(parseError("[\"" + plain + "\" x").offset, end + 4);
}

TEST(JSONParserStrings, OfEveryLengthAreReadAlike) {
    for (std::size_t length = 0; length < 300; ++length)
        ASSERT_NO_FATAL_FAILURE(expectReadAlike(std::string(length, 'x')));
}

TEST(JSONParserStrings, OfMegabytesAreReadWithAndWithoutEscapes) {
    const std::string megabyte = test::repeated("áéíóú 0123456789 ", 60'000);
    EXPECT_EQ(decoded("\"" + megabyte + "\""), megabyte);
    EXPECT_EQ(decoded("\"" + megabyte + "\\\\" + megabyte + "\""), megabyte + "\\" + megabyte);
    EXPECT_EQ(decoded("\"" + test::repeated(R"(\u00e1\n)", 200'000) + "\""), test::repeated("á\n", 200'000));
}

TEST(JSONParserStrings, KeysAreDecodedLikeValues) {
    const JSONTree tree = parsed(R"({"a\tb":1,"\u00e9":2,"":3,"plain":4})");
    EXPECT_EQ(tree.key(test::nodeAt(tree, {0})), "a\tb");
    EXPECT_EQ(tree.key(test::nodeAt(tree, {1})), "é");
    EXPECT_EQ(tree.key(test::nodeAt(tree, {2})), "");
    EXPECT_EQ(tree.key(test::nodeAt(tree, {3})), "plain");
}

} // namespace
} // namespace quelm
