#include "JSONCore/TreeRow.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <vector>

namespace quelm {
namespace {

using Label = TreeRow::Label;
using test::repeated;

const std::string ellipsis = "…";

TEST(TreeRowLabel, ShowsThePayloadOfItsCaseAlone) {
    const Label key = Label::key("clave");
    ASSERT_TRUE(key.asKey());
    EXPECT_EQ(*key.asKey(), "clave");
    EXPECT_FALSE(key.asIndex());
    EXPECT_FALSE(key.isRoot());

    const Label index = Label::index(7);
    ASSERT_TRUE(index.asIndex());
    EXPECT_EQ(*index.asIndex(), 7);
    EXPECT_FALSE(index.asKey());
    EXPECT_FALSE(index.isRoot());

    EXPECT_TRUE(Label::root().isRoot());
    EXPECT_FALSE(Label::root().asKey());
    EXPECT_FALSE(Label::root().asIndex());
}

TEST(TreeRowLabel, EqualsOnlyTheSameCaseWithTheSamePayload) {
    const std::vector<Label> labels{Label::root(),   Label::key(""),  Label::key("a"), Label::key("A"),
                                    Label::key("0"), Label::index(0), Label::index(1)};
    for (std::size_t left = 0; left < labels.size(); ++left) {
        for (std::size_t right = 0; right < labels.size(); ++right)
            EXPECT_EQ(labels[left] == labels[right], left == right);
    }
    EXPECT_EQ(Label::key("e\u0301"), Label::key("\u00E9"));
}

TEST(TreeRow, EqualsAnotherOnlyWithAllFields) {
    const TreeRow row{NodeID{3}, 2, Label::key("a"), NodeKind::string, "x", 0, false, false};
    EXPECT_EQ(row, TreeRow(row));
    const auto changed = [&](auto change) {
        TreeRow other = row;
        change(other);
        return other;
    };
    EXPECT_NE(row, changed([](TreeRow& other) { other.id = NodeID{4}; }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.depth = 3; }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.label = Label::key("b"); }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.kind = NodeKind::number; }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.value = "y"; }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.childCount = 1; }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.isExpanded = true; }));
    EXPECT_NE(row, changed([](TreeRow& other) { other.isDuplicateKey = true; }));
}

TEST(TreeRow, ComparesTextsByCanonicalEquivalence) {
    const TreeRow composed{NodeID{3}, 2, Label::key("\u00E9"), NodeKind::string, "\u212B", 0, false, false};
    const TreeRow decomposed{NodeID{3}, 2, Label::key("e\u0301"), NodeKind::string, "A\u030A", 0, false, false};
    EXPECT_EQ(composed, decomposed);
}

TEST(TreeRowText, OfAtMost200BytesIsShownWhole) {
    for (const std::string& text : {std::string(), std::string("a"), std::string(199, 'a'), std::string(200, 'a'),
                                    repeated("é", 100), repeated("€", 66), repeated("😀", 50), repeated("\n", 200)})
        EXPECT_EQ(TreeRow::displayText(text), text);
}

TEST(TreeRowText, OfMoreThan200BytesIsCutAfter200Characters) {
    EXPECT_EQ(TreeRow::displayText(std::string(201, 'a')), std::string(200, 'a') + ellipsis);
    EXPECT_EQ(TreeRow::displayText(std::string(5'000'000, 'a')), std::string(200, 'a') + ellipsis);
    EXPECT_EQ(TreeRow::displayText(repeated("é", 300)), repeated("é", 200) + ellipsis);
    EXPECT_EQ(TreeRow::displayText(repeated("😀", 201)), repeated("😀", 200) + ellipsis);
    EXPECT_EQ(TreeRow::displayText("a" + repeated("é", 300)), "a" + repeated("é", 199) + ellipsis);
}

TEST(TreeRowText, OfMoreThan200BytesButFewerCharactersKeepsThemAll) {
    EXPECT_EQ(TreeRow::displayText(repeated("é", 101)), repeated("é", 101) + ellipsis);
    EXPECT_EQ(TreeRow::displayText(repeated("é", 150)), repeated("é", 150) + ellipsis);
    EXPECT_EQ(TreeRow::displayText(repeated("é", 200)), repeated("é", 200) + ellipsis);
    EXPECT_EQ(TreeRow::displayText(repeated("日本", 34)), repeated("日本", 34) + ellipsis);
    EXPECT_EQ(TreeRow::displayText(repeated("😀", 51)), repeated("😀", 51) + ellipsis);
}

TEST(TreeRowText, CountsCharactersThatTheUserPerceives) {
    for (const std::string_view character : {"e\u0301", "🇪🇸", "👨‍👩‍👧", "👍🏽", "\r\n", "\uAC01"})
        EXPECT_EQ(TreeRow::displayText(repeated(character, 250)), repeated(character, 200) + ellipsis) << character;
    // One character of many marks.
    EXPECT_EQ(TreeRow::displayText("a" + repeated("\u0301", 1'000)), "a" + repeated("\u0301", 1'000) + ellipsis);
    EXPECT_EQ(TreeRow::displayText(std::string(199, 'a') + "e" + repeated("\u0301", 50) + "z"),
              std::string(199, 'a') + "e" + repeated("\u0301", 50) + ellipsis);
}

TEST(TreeRowText, ThatEndsInAnEllipsisOfItsOwnIsNotTakenForAShortenedOne) {
    const auto isShortened = [](const std::string& scalar) {
        TreeRow row;
        row.value = TreeRow::displayText(scalar);
        return row.isValueShortened();
    };
    EXPECT_FALSE(isShortened(""));
    EXPECT_FALSE(isShortened("a" + ellipsis));
    EXPECT_FALSE(isShortened(std::string(200, 'a')));
    EXPECT_FALSE(isShortened(std::string(197, 'a') + ellipsis));
    EXPECT_TRUE(isShortened(std::string(198, 'a') + ellipsis));
    EXPECT_TRUE(isShortened(std::string(201, 'a')));
    EXPECT_TRUE(isShortened(repeated("é", 101)));
    EXPECT_TRUE(isShortened("a" + repeated("\u0301", 1'000)));
}

TEST(TreeRowText, IsTheSameInAPreviewUnlessItsCharactersAreAbsurdlyLong) {
    for (const std::string& text :
         {std::string(), std::string("a…"), std::string(200, 'a'), std::string(201, 'a'), std::string(50'000, 'a'),
          repeated("é", 101), repeated("é", 30'000), repeated("😀", 5'000), repeated("e\u0301", 20'000),
          repeated("👨‍👩‍👧", 2'000), "a" + repeated("\u0301", 1'000)})
        EXPECT_EQ(TreeRow::previewText(text), TreeRow::displayText(text));
}

TEST(TreeRowText, OfOneEndlessCharacterIsCutInAPreview) {
    const std::string text = "a" + repeated("\u0301", 1'000'000);
    EXPECT_EQ(TreeRow::previewText(text), text.substr(0, TreeRow::longestPreview - 1) + ellipsis);
}

TEST(TreeRowKey, IsCutBetweenScalarValuesInAPreview) {
    constexpr std::size_t longest = TreeRow::longestPreview;
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, longest - 1, longest}) {
        const std::string key(size, 'k');
        EXPECT_EQ(TreeRow::previewKey(key), key);
    }
    EXPECT_EQ(TreeRow::previewKey(std::string(longest + 1, 'k')).size(), longest);
    for (std::size_t shift = 0; shift < 4; ++shift) {
        const std::string key = std::string(shift, 'k') + repeated("😀", longest);
        const std::string_view preview = TreeRow::previewKey(key);
        EXPECT_TRUE(key.starts_with(preview));
        EXPECT_EQ(preview.size() % 4, shift);
        EXPECT_GT(preview.size(), longest - 4);
        EXPECT_LE(preview.size(), longest);
    }
}

} // namespace
} // namespace quelm
