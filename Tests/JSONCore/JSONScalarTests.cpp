#include "JSONCore/JSONScalar.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

using JSONScalar::convert;
using JSONScalar::isValid;

TEST(JSONScalar, NumbersAreOneLiteralAndNothingElse) {
    for (const std::string_view text :
         {"0", "-0", "1", "-1", "42", "1234567890123456789012345678901234567890", "0.5", "-0.5", "1.50", "0.0", "1e2",
          "1E2", "1e+2", "1e-2", "0e5", "0e005", "-12.5E+07", "0.5e-3", "1e999999999"})
        EXPECT_TRUE(isValid(text, NodeKind::number)) << text;
    for (const std::string_view text :
         {"",     " ",        " 1",        "1 ",  "\t1",   "1\n", "+1",  "-",    "--1",    ".5",    "-.5", "5.",
          "1.e5", "01",       "-01",       "00",  "0x1F",  "1e",  "1e+", "1E-",  "1e5.5",  "1.2.3", "NaN", "nan",
          "inf",  "Infinity", "-Infinity", "1,5", "1_000", "1a",  "a",   "true", "\u0661", "１",    "−1",  "1\u00A0"})
        EXPECT_FALSE(isValid(text, NodeKind::number)) << text;
    EXPECT_FALSE(isValid(std::string_view("1\0", 2), NodeKind::number));
    EXPECT_FALSE(isValid(std::string_view("\0", 1), NodeKind::number));
}

TEST(JSONScalar, NumbersAreJudgedWithinTheTextAlone) {
    constexpr std::string_view memory = "12.5e7x";
    EXPECT_TRUE(isValid(memory.substr(0, 2), NodeKind::number));
    EXPECT_FALSE(isValid(memory.substr(0, 3), NodeKind::number));
    EXPECT_TRUE(isValid(memory.substr(0, 4), NodeKind::number));
    EXPECT_FALSE(isValid(memory.substr(0, 5), NodeKind::number));
    EXPECT_TRUE(isValid(memory.substr(0, 6), NodeKind::number));
    EXPECT_FALSE(isValid(memory, NodeKind::number));
}

TEST(JSONScalar, StringsAreAnyText) {
    for (const std::string_view text : {"", " ", "abc", "\n", "\"", "true", "1", "é😀"})
        EXPECT_TRUE(isValid(text, NodeKind::string)) << text;
    EXPECT_TRUE(isValid(std::string_view("\0", 1), NodeKind::string));
}

TEST(JSONScalar, BooleansAreTwoWords) {
    EXPECT_TRUE(isValid("true", NodeKind::bool_));
    EXPECT_TRUE(isValid("false", NodeKind::bool_));
    for (const std::string_view text :
         {"", "True", "TRUE", "False", " true", "true ", "false\n", "1", "0", "yes", "tru"})
        EXPECT_FALSE(isValid(text, NodeKind::bool_)) << text;
}

TEST(JSONScalar, NullIsTheEmptyText) {
    EXPECT_TRUE(isValid("", NodeKind::null));
    for (const std::string_view text : {"null", " ", "0"})
        EXPECT_FALSE(isValid(text, NodeKind::null)) << text;
}

TEST(JSONScalar, ContainersHaveNoText) {
    for (const std::string_view text : {"", "{}", "[]", "a"}) {
        EXPECT_FALSE(isValid(text, NodeKind::object)) << text;
        EXPECT_FALSE(isValid(text, NodeKind::array)) << text;
    }
}

TEST(JSONScalar, NewValuesStartAtZeroFalseOrEmpty) {
    EXPECT_EQ(JSONScalar::defaultScalar(NodeKind::number), "0");
    EXPECT_EQ(JSONScalar::defaultScalar(NodeKind::bool_), "false");
    for (const NodeKind kind : {NodeKind::object, NodeKind::array, NodeKind::string, NodeKind::null})
        EXPECT_EQ(JSONScalar::defaultScalar(kind), "");
}

TEST(JSONScalar, ScansTheLongestNumberAtAPosition) {
    EXPECT_EQ(JSONScalar::scanNumber("123"), 3U);
    EXPECT_EQ(JSONScalar::scanNumber("123abc"), 3U);
    EXPECT_EQ(JSONScalar::scanNumber("01"), 1U);
    EXPECT_EQ(JSONScalar::scanNumber("-0.5e-3,"), 7U);
    EXPECT_EQ(JSONScalar::scanNumber("[1.5]", 1), 4U);
    EXPECT_EQ(JSONScalar::scanNumber("1-2"), 1U);
    for (const std::string_view text : {"", "-", "a", "1.", "1.x", "1e", "1e+", ".5", "+1", " 1"})
        EXPECT_EQ(JSONScalar::scanNumber(text), std::string_view::npos) << text;
    EXPECT_EQ(JSONScalar::scanNumber("12", 2), std::string_view::npos);
}

struct Conversion {
    std::string_view text;
    NodeKind from;
    std::string_view expected;
};

void expectConversions(NodeKind to, std::initializer_list<Conversion> cases) {
    for (const auto& [text, from, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(text) + " from " + std::string(test::nameOf(from)));
        EXPECT_EQ(convert(text, from, to), expected);
    }
}

TEST(JSONScalar, BecomesANumberWhenItsTrimmedTextIsOne) {
    expectConversions(NodeKind::number, {
                                            {"  42 ", NodeKind::string, "42"},
                                            {"1.50", NodeKind::string, "1.50"},
                                            {"\n\t-0.5e-3\r\n", NodeKind::string, "-0.5e-3"},
                                            {"\u00A07\u3000", NodeKind::string, "7"},
                                            {"\u2028\u20297\u0085", NodeKind::string, "7"},
                                            {"\v7\f", NodeKind::string, "7"},
                                            {"\u20007\u200A\u202F\u205F\u1680", NodeKind::string, "7"},
                                            // Invisible, but no white space.
                                            {"\u200B7", NodeKind::string, "0"},
                                            {"\uFEFF7", NodeKind::string, "0"},
                                            {"abc", NodeKind::string, "0"},
                                            {"", NodeKind::string, "0"},
                                            {"4 2", NodeKind::string, "0"},
                                            {"+1", NodeKind::string, "0"},
                                            {"0x1F", NodeKind::string, "0"},
                                            {"01", NodeKind::string, "0"},
                                            {"true", NodeKind::string, "0"},
                                            {"", NodeKind::null, "0"},
                                            {"", NodeKind::object, "0"},
                                            {"", NodeKind::array, "0"},
                                        });
}

TEST(JSONScalar, TrueBecomesOneAndAnyOtherBooleanZero) {
    expectConversions(NodeKind::number, {
                                            {"true", NodeKind::bool_, "1"},
                                            {"false", NodeKind::bool_, "0"},
                                            {" true ", NodeKind::bool_, "0"},
                                            {"TRUE", NodeKind::bool_, "0"},
                                            {"12", NodeKind::bool_, "12"},
                                        });
}

TEST(JSONScalar, BecomesABooleanByTheWordTrue) {
    expectConversions(NodeKind::bool_, {
                                           {"true", NodeKind::string, "true"},
                                           {" TRUE ", NodeKind::string, "true"},
                                           {"\u00A0tRuE\n", NodeKind::string, "true"},
                                           {"false", NodeKind::string, "false"},
                                           {"yes", NodeKind::string, "false"},
                                           {"1", NodeKind::string, "false"},
                                           {"", NodeKind::string, "false"},
                                           {"tr ue", NodeKind::string, "false"},
                                           {"truе", NodeKind::string, "false"}, // the last letter is Cyrillic
                                           {"ｔｒｕｅ", NodeKind::string, "false"},
                                           {"", NodeKind::null, "false"},
                                           {"", NodeKind::object, "false"},
                                           {"", NodeKind::array, "false"},
                                           {"true", NodeKind::number, "true"},
                                       });
}

TEST(JSONScalar, NumbersBecomeBooleansByTheirValue) {
    expectConversions(NodeKind::bool_, {
                                           {"2", NodeKind::number, "true"},
                                           {"0.0", NodeKind::number, "false"},
                                           {"0", NodeKind::number, "false"},
                                           {"-0", NodeKind::number, "false"},
                                           {"-0.0e7", NodeKind::number, "false"},
                                           {"0e5", NodeKind::number, "false"},
                                           {"-1", NodeKind::number, "true"},
                                           {"0.001", NodeKind::number, "true"},
                                           {"0.5", NodeKind::number, "true"},
                                           {"1e999", NodeKind::number, "true"},
                                           {"1e-300", NodeKind::number, "true"},
                                           // So small that the nearest double is zero.
                                           {"1e-999", NodeKind::number, "false"},
                                           {"4.9e-324", NodeKind::number, "true"},
                                       });
}

TEST(JSONScalar, NumbersThatOnlyTheLenientConversionReadsBecomeBooleansToo) {
    expectConversions(NodeKind::bool_, {
                                           {"0x1F", NodeKind::number, "true"},
                                           {"0x0", NodeKind::number, "false"},
                                           {"0X1p-3", NodeKind::number, "true"},
                                           {"0x0p9", NodeKind::number, "false"},
                                           {"0x.8", NodeKind::number, "true"},
                                           {"inf", NodeKind::number, "true"},
                                           {"-Infinity", NodeKind::number, "true"},
                                           {"INFINITY", NodeKind::number, "true"},
                                           {"nan", NodeKind::number, "true"},
                                           {"NAN(1)", NodeKind::number, "true"},
                                           {"-nan", NodeKind::number, "true"},
                                           {"+1", NodeKind::number, "true"},
                                           {"+0", NodeKind::number, "false"},
                                           {".5", NodeKind::number, "true"},
                                           {"5.", NodeKind::number, "true"},
                                           {"01", NodeKind::number, "true"},
                                           {"  3  ", NodeKind::number, "true"},
                                           {"\u00A03", NodeKind::number, "true"},
                                       });
    expectConversions(NodeKind::bool_, {
                                           {"", NodeKind::number, "false"},
                                           {"1x", NodeKind::number, "false"},
                                           {"1 2", NodeKind::number, "false"},
                                           {"1e", NodeKind::number, "false"},
                                           {"0x", NodeKind::number, "false"},
                                           {"infinit", NodeKind::number, "false"},
                                           {"1,5", NodeKind::number, "false"},
                                           {".", NodeKind::number, "false"},
                                           {"--1", NodeKind::number, "false"},
                                           {"nan(", NodeKind::number, "false"},
                                           {"- 1", NodeKind::number, "false"},
                                           {"１", NodeKind::number, "false"},
                                       });
    EXPECT_EQ(convert(std::string_view("\0001", 2), NodeKind::number, NodeKind::bool_), "false");
    EXPECT_EQ(convert(std::string_view("1\0", 2), NodeKind::number, NodeKind::bool_), "false");
    EXPECT_EQ(convert(std::string_view("1\0002", 3), NodeKind::number, NodeKind::bool_), "false");
}

TEST(JSONScalar, LongNumbersBecomeBooleansByTheirWholeText) {
    const std::string zeros(5'000, '0');
    EXPECT_EQ(convert("0." + zeros, NodeKind::number, NodeKind::bool_), "false");
    EXPECT_EQ(convert("0." + std::string(300, '0') + "1", NodeKind::number, NodeKind::bool_), "true");
    EXPECT_EQ(convert("1" + zeros, NodeKind::number, NodeKind::bool_), "true");
    EXPECT_EQ(convert("1" + zeros + "x", NodeKind::number, NodeKind::bool_), "false");
}

TEST(JSONScalar, BecomesAStringUnchanged) {
    expectConversions(NodeKind::string, {
                                            {"12.50", NodeKind::number, "12.50"},
                                            {"1e+05", NodeKind::number, "1e+05"},
                                            {"true", NodeKind::bool_, "true"},
                                            {"false", NodeKind::bool_, "false"},
                                            {" 1 ", NodeKind::number, " 1 "},
                                            {" a ", NodeKind::string, " a "},
                                            {"", NodeKind::null, ""},
                                            {"a", NodeKind::null, ""},
                                            {"a", NodeKind::object, ""},
                                            {"a", NodeKind::array, ""},
                                        });
}

TEST(JSONScalar, LeavesNothingToNullAndContainers) {
    for (const NodeKind to : {NodeKind::null, NodeKind::object, NodeKind::array}) {
        for (const NodeKind from : allNodeKinds)
            EXPECT_EQ(convert("true", from, to), "");
    }
}

TEST(JSONScalar, ConvertsToTheSameKindByTheSameRules) {
    EXPECT_EQ(convert(" 7 ", NodeKind::number, NodeKind::number), "7");
    EXPECT_EQ(convert("x", NodeKind::number, NodeKind::number), "0");
    EXPECT_EQ(convert("True", NodeKind::bool_, NodeKind::bool_), "true");
}

TEST(JSONScalar, ConversionAlwaysGivesAValidTextOfAScalar) {
    const std::string_view texts[] = {"",     " ",   "a",    "true", " TRUE", "false", "0",
                                      "12.5", " 7 ", "0x1F", "nan",  "1e",    "é\n"};
    for (const std::string_view text : texts) {
        for (const NodeKind from : allNodeKinds) {
            for (const NodeKind to : {NodeKind::string, NodeKind::number, NodeKind::bool_, NodeKind::null})
                EXPECT_TRUE(isValid(convert(text, from, to), to)) << text;
        }
    }
}

} // namespace
} // namespace quelm
