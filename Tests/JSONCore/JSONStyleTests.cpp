#include "JSONCore/JSONStyle.h"
#include "Tests/JSONCore/Support/AllStyles.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unordered_set>
#include <vector>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;
using test::allStyles;

TEST(JSONStyle, OffersItsIndentsInOrder) {
    EXPECT_THAT(JSONStyle::allIndents, testing::ElementsAre(Indent::twoSpaces, Indent::fourSpaces, Indent::tab));
}

TEST(JSONStyle, StoresIndentsByTheirNames) {
    EXPECT_EQ(JSONStyle::rawValue(Indent::twoSpaces), "twoSpaces");
    EXPECT_EQ(JSONStyle::rawValue(Indent::fourSpaces), "fourSpaces");
    EXPECT_EQ(JSONStyle::rawValue(Indent::tab), "tab");
    for (const Indent indent : JSONStyle::allIndents)
        EXPECT_EQ(JSONStyle::indentFromRawValue(JSONStyle::rawValue(indent)), indent);
}

TEST(JSONStyle, KnowsNoOtherNamesOfIndents) {
    for (const std::string_view name : {"", "TwoSpaces", "two", "twospaces", "twoSpaces ", " tab", "Tab", "TAB", "0",
                                        "tabs", "fourSpacesX", "compact"})
        EXPECT_EQ(JSONStyle::indentFromRawValue(name), std::nullopt) << name;
    EXPECT_EQ(JSONStyle::indentFromRawValue(std::string_view("tab\0", 4)), std::nullopt);
}

TEST(JSONStyle, IndentsByTwoSpacesFourSpacesOrOneTab) {
    EXPECT_EQ(JSONStyle::unit(Indent::twoSpaces), "  ");
    EXPECT_EQ(JSONStyle::unit(Indent::fourSpaces), "    ");
    EXPECT_EQ(JSONStyle::unit(Indent::tab), "\t");
}

TEST(JSONStyle, CompactHasNeitherIndentNorOrder) {
    const JSONStyle style = JSONStyle::compact();
    EXPECT_TRUE(style.isCompact());
    EXPECT_FALSE(style.isPretty());
    EXPECT_EQ(style.prettyIndent(), std::nullopt);
    EXPECT_FALSE(style.sortsKeys());
}

TEST(JSONStyle, PrettyHasBoth) {
    const JSONStyle style = JSONStyle::pretty(Indent::fourSpaces, true);
    EXPECT_FALSE(style.isCompact());
    EXPECT_TRUE(style.isPretty());
    EXPECT_EQ(style.prettyIndent(), Indent::fourSpaces);
    EXPECT_TRUE(style.sortsKeys());
    EXPECT_FALSE(JSONStyle::pretty(Indent::fourSpaces, false).sortsKeys());
}

TEST(JSONStyle, EqualsOnlyTheSameCaseWithTheSamePayload) {
    const std::vector<JSONStyle> styles = allStyles();
    for (std::size_t left = 0; left < styles.size(); ++left) {
        for (std::size_t right = 0; right < styles.size(); ++right)
            EXPECT_EQ(styles[left] == styles[right], left == right);
    }
}

TEST(JSONStyle, HashesByCaseIndentAndOrder) {
    const std::vector<JSONStyle> styles = allStyles();
    std::unordered_set<std::size_t> hashes;
    for (const JSONStyle& style : styles) {
        EXPECT_EQ(std::hash<JSONStyle>{}(style), std::hash<JSONStyle>{}(JSONStyle(style)));
        hashes.insert(std::hash<JSONStyle>{}(style));
    }
    EXPECT_EQ(hashes.size(), styles.size());
    const std::unordered_set<JSONStyle> set(styles.begin(), styles.end());
    EXPECT_EQ(set.size(), styles.size());
    EXPECT_TRUE(set.contains(JSONStyle::pretty(Indent::tab, true)));
}

} // namespace
} // namespace quelm
