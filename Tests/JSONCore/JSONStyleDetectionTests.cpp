#include "JSONCore/JSONStyle.h"
#include "Tests/JSONCore/Models/NaiveWriter.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"
#include "Tests/JSONCore/Support/Random.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;

constexpr JSONStyle compact = JSONStyle::compact();
constexpr JSONStyle twoSpaces = JSONStyle::pretty(Indent::twoSpaces, false);
constexpr JSONStyle fourSpaces = JSONStyle::pretty(Indent::fourSpaces, false);
constexpr JSONStyle tab = JSONStyle::pretty(Indent::tab, false);

/// Bytes of a text that decide.
constexpr std::size_t prefixSize = 65'536;

struct Detected {
    std::string_view text;
    JSONStyle style;
};

void expectDetected(std::initializer_list<Detected> cases) {
    for (const auto& [text, style] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(JSONStyle::detect(text), style);
    }
}

TEST(JSONStyleDetection, ATextOnOneLineIsCompact) {
    expectDetected({
        {"", compact},
        {"{}", compact},
        {"{}\n", compact},
        {"{}\r\n", compact},
        {"   {}", compact},
        {"\t[1,2]", compact},
        {"[1, 2,\t3]\n", compact},
        {"\n", compact},
        {"{}\r[\r  1]", compact},
    });
}

TEST(JSONStyleDetection, TheFirstIndentedLineDecides) {
    expectDetected({
        {"{\n  \"a\":1\n}\n", twoSpaces},
        {"{\n    \"a\":1\n}\n", fourSpaces},
        {"{\n\t\"a\":1\n}\n", tab},
        {"{\n  \"a\":{\n    \"b\":1}}", twoSpaces},
        {"{\n    \"a\":{\n  \"b\":1}}", fourSpaces},
        {"{\n    \"a\":{\n\t\"b\":1}}", fourSpaces},
        {"{\n\t\"a\":{\n    \"b\":1}}", tab},
    });
}

TEST(JSONStyleDetection, ExactlyFourSpacesAreFourAnyOtherNumberIsTwo) {
    for (std::size_t spaces = 1; spaces <= 20; ++spaces)
        EXPECT_EQ(JSONStyle::detect("[\n" + std::string(spaces, ' ') + "1]"), spaces == 4 ? fourSpaces : twoSpaces)
            << spaces;
}

TEST(JSONStyleDetection, ATabAnywhereInTheIndentationIsATab) {
    expectDetected({
        {"[\n\t1]", tab},
        {"[\n\t\t1]", tab},
        {"[\n    \t1]", tab},
        {"[\n\t    1]", tab},
        {"[\n  \t  1]", tab},
        // Not after the indentation.
        {"[\n  1,\t2]", twoSpaces},
        {"[\n1,\t2]", twoSpaces},
    });
}

TEST(JSONStyleDetection, TheFirstLineIsNotLookedAt) {
    expectDetected({
        {"    [\n1]", twoSpaces},
        {"\t[\n    1]", fourSpaces},
        {"\n    [\n  1]", fourSpaces},
        {"\n[1]", twoSpaces},
    });
}

TEST(JSONStyleDetection, LinesWithoutIndentationMakeItPretty) {
    expectDetected({
        {"[1,\n2]", twoSpaces},
        {"{\n}", twoSpaces},
        {"{}\n\nx", twoSpaces},
        // A later indented line decides after all.
        {"[1,\n2,\n    3]", fourSpaces},
        {"[1,\n2,\n\t3]", tab},
    });
}

TEST(JSONStyleDetection, BlankLinesDecideNothing) {
    expectDetected({
        {"{\n\n\n    \"a\":1}", fourSpaces},
        {"{\n  \n    \"a\":1}", fourSpaces},
        {"{\n\t\n    \"a\":1}", fourSpaces},
        {"{}\n\n  \n\t\n", compact},
        {"{}\n    ", compact},
        {"{}\n\t", compact},
    });
}

TEST(JSONStyleDetection, CarriageReturnsAreSkipped) {
    expectDetected({
        {"{\r\n  \"a\":1\r\n}\r\n", twoSpaces},
        {"{\r\n    \"a\":1\r\n}\r\n", fourSpaces},
        {"{\r\n\t\"a\":1\r\n}\r\n", tab},
        {"[1,\r\n2]", twoSpaces},
        {"{}\r\n\r\n", compact},
        {"{\n  \r  \"a\":1}", fourSpaces},
        {"{\n\r\r    \"a\":1}", fourSpaces},
        {"[\r\n \r\n    1]", fourSpaces},
    });
}

TEST(JSONStyleDetection, OtherWhiteSpaceIsContent) {
    expectDetected({
        {"[\n\u00A0\u00A0 1]", twoSpaces},
        {"[\n\v    1,\n    2]", fourSpaces},
        {"[\n    \f\t1]", fourSpaces},
        {"\uFEFF{\n    \"a\":1}", fourSpaces},
        {std::string_view("[\n\0\t1]", 6), twoSpaces},
    });
}

TEST(JSONStyleDetection, OnlyTheFirstBytesDecide) {
    const std::string firstLine(prefixSize - 1, 'x');
    EXPECT_EQ(JSONStyle::detect(firstLine + "\n    1"), compact);
    // All of the indentation, but not what follows it.
    EXPECT_EQ(JSONStyle::detect(std::string(prefixSize - 5, 'x') + "\n    1"), compact);
    EXPECT_EQ(JSONStyle::detect(std::string(prefixSize - 6, 'x') + "\n    1"), fourSpaces);
    EXPECT_EQ(JSONStyle::detect("[1,\n2," + std::string(prefixSize, 'x') + "\n    3]"), twoSpaces);
    EXPECT_EQ(JSONStyle::detect("[\n" + std::string(prefixSize, ' ') + "1]"), compact);
    EXPECT_EQ(JSONStyle::detect("[\n" + std::string(prefixSize - 3, ' ') + "1]"), twoSpaces);
    EXPECT_EQ(JSONStyle::detect("[\n" + std::string(prefixSize, '\n') + "\t1]"), compact);
}

TEST(JSONStyleDetection, AgreesWithACheckLineByLine) {
    test::forEachRound(300, [](test::Random& random) {
        for (int i = 0; i < 20; ++i) {
            std::string text;
            const std::int64_t length = random.below(40);
            for (std::int64_t k = 0; k < length; ++k)
                text += random.oneOf(std::string_view("  \t\r\n\nxx{"));
            ASSERT_EQ(JSONStyle::detect(text), test::naiveStyle(text)) << testing::PrintToString(text);
        }
    });
}

TEST(JSONStyleDetection, AgreesWithACheckLineByLineAroundTheLastByteThatDecides) {
    test::forEachRound(100, [](test::Random& random) {
        std::string text(prefixSize - 10, 'x');
        for (int k = 0; k < 20; ++k)
            text += random.oneOf(std::string_view("  \t\r\n\nxx{"));
        ASSERT_EQ(JSONStyle::detect(text), test::naiveStyle(text))
            << testing::PrintToString(text.substr(prefixSize - 10));
    });
}

} // namespace
} // namespace quelm
