#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONScalar.h"
#include "Tests/JSONCore/Support/CommaLocale.h"
#include "Tests/JSONCore/Support/JSONText.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <locale>
#include <string>

namespace quelm {
namespace {

/// Everything that a locale could change, in a process whose locale writes numbers with a decimal comma.
class JSONScalarLocale : public testing::Test {
private:
    test::CommaLocale locale_;
};

TEST_F(JSONScalarLocale, TheTestsLocaleHasADecimalComma) {
    EXPECT_EQ(std::use_facet<std::numpunct<char>>(std::locale()).decimal_point(), ',');
    // The C library's too, unless the system can neither offer nor make such a locale.
    const bool isC = std::string_view(std::setlocale(LC_NUMERIC, nullptr)) == "C";
    EXPECT_EQ(std::strtod("0,5", nullptr), isC ? 0.0 : 0.5);
}

TEST_F(JSONScalarLocale, NumbersBecomeBooleansAsInAnyOther) {
    const auto toBool = [](std::string_view text) {
        return JSONScalar::convert(text, NodeKind::number, NodeKind::bool_);
    };
    EXPECT_EQ(toBool("0.5"), "true");
    EXPECT_EQ(toBool("0.0"), "false");
    EXPECT_EQ(toBool("0.25e-3"), "true");
    EXPECT_EQ(toBool("0x.8"), "true");
    EXPECT_EQ(toBool("0,5"), "false");
    EXPECT_EQ(toBool("1,0"), "false");
    EXPECT_EQ(toBool("1.000"), "true");
    EXPECT_EQ(toBool("1.000.000"), "false");
}

TEST_F(JSONScalarLocale, NumbersAreValidAsInAnyOther) {
    EXPECT_TRUE(JSONScalar::isValid("0.5", NodeKind::number));
    EXPECT_FALSE(JSONScalar::isValid("0,5", NodeKind::number));
    EXPECT_EQ(JSONScalar::convert(" 0.5 ", NodeKind::string, NodeKind::number), "0.5");
    EXPECT_EQ(JSONScalar::convert("0,5", NodeKind::string, NodeKind::number), "0");
    EXPECT_TRUE(JSONParser::parse(test::rope("[0.5]")));
    EXPECT_FALSE(JSONParser::parse(test::rope("0,5")));
}

TEST_F(JSONScalarLocale, PlacesAndPathsAreWrittenWithoutSeparators) {
    EXPECT_EQ((JSONParseError{"x", 0, 1'234'567, 12'345}.errorDescription()), "Línea 1234567, columna 12345: x");
    const JSONTree tree = test::parsed("[" + test::repeated("0,", 12'345) + "0]");
    EXPECT_EQ(tree.path(test::nodeAt(tree, {12'345})), "$[12345]");
}

TEST_F(JSONScalarLocale, NumberedKeysAreWrittenWithoutSeparators) {
    std::string text = R"({"k":0)";
    for (int number = 2; number < 1'500; ++number)
        text += ",\"k " + std::to_string(number) + "\":0";
    const JSONTree tree = test::parsed(text + "}");
    EXPECT_EQ(tree.uniqueKey("k", tree.root()), "k 1500");
}

} // namespace
} // namespace quelm
