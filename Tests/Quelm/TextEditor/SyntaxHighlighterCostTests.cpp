#include "Quelm/TextEditor/SyntaxHighlighter.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/TextEditor/ColorLetters.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace quelm {
namespace {

using test::colors;

TextRope rope(std::u16string_view text) {
    return TextRope::repairing(text);
}

void highlightAll(TextStorage& storage) {
    SyntaxHighlighter().highlight(storage, {0, storage.length()});
}

/// One line of records, of some length.
std::u16string records(std::size_t length) {
    std::u16string text = u"[";
    while (text.size() < length) {
        const std::string number = std::to_string(text.size());
        text += u"{\"id\":" + std::u16string(number.begin(), number.end()) +
                u",\"nombre\":\"Peña\\t3\",\"activo\":true,\"nota\":null,\"valores\":[1.5,-2e3]},";
    }
    return text;
}

class SyntaxHighlighterCostTests : public testing::Test {
protected:
    SyntaxHighlighterCostTests() { highlightAll(storage); }

    /// What it takes to colour the line after an edit, in bytes scanned.
    qint64 cost(TextRange range, std::u16string_view replacement) {
        storage.replaceCharacters(range, rope(replacement));
        return SyntaxHighlighter().highlight(storage, {range.location, static_cast<qint64>(replacement.size())});
    }

    void expectColorsOfAFreshScan() {
        TextStorage fresh(storage.text());
        highlightAll(fresh);
        EXPECT_TRUE(colors(storage) == colors(fresh)) << "too long to be printed";
    }

    static constexpr qint64 little = 20'000;
    TextStorage storage{rope(records(2'900'000))};
};

TEST_F(SyntaxHighlighterCostTests, KeysScanTheirNeighbourhoodAlone) {
    for (const qint64 place : {qint64{1}, storage.length() / 3, storage.length() / 2, storage.length()})
        for (const std::u16string_view key : {u"1", u" ", u"x", u",", u"]", u":"})
            EXPECT_LT(cost({place, 0}, key), little) << place;
    for (const qint64 place : {qint64{0}, storage.length() / 3, storage.length() / 2, storage.length() - 10}) {
        // A quote changes all that follows it.
        if (storage.string({place, 1}) == QStringLiteral("\""))
            continue;
        EXPECT_LT(cost({place, 1}, u""), little) << place;
    }
    expectColorsOfAFreshScan();
}

TEST_F(SyntaxHighlighterCostTests, AQuoteAndItsRemovalScanTheRestOnceEach) {
    EXPECT_GT(cost({0, 0}, u"\""), storage.length());
    EXPECT_LT(cost({1, 0}, u"x"), little);
    expectColorsOfAFreshScan();
    EXPECT_LT(cost({0, 2}, u""), storage.length() * 2);
    expectColorsOfAFreshScan();
}

TEST_F(SyntaxHighlighterCostTests, AClosedStringTypedAtOnceScansItsNeighbourhoodAlone) {
    EXPECT_LT(cost({1, 0}, u"\"abc\","), little);
    expectColorsOfAFreshScan();
}

TEST_F(SyntaxHighlighterCostTests, DividingAndJoiningItScansTheNeighbourhoodAlone) {
    std::u16string_view afterRecord = u"\n";
    const qint64 place = 1 + static_cast<qint64>(records(2).size() - 1);
    EXPECT_LT(cost({place, 0}, afterRecord), little);
    EXPECT_LT(cost({place + 1, 0}, u" "), little);
    EXPECT_LT(cost({place, 2}, u""), little);
    expectColorsOfAFreshScan();
}

TEST_F(SyntaxHighlighterCostTests, ColouringWhatWasNotEditedScansNothing) {
    EXPECT_EQ(SyntaxHighlighter().highlight(storage, {0, storage.length()}), 0);
    EXPECT_EQ(SyntaxHighlighter().highlight(storage, {storage.length() / 2, 0}), 0);
}

TEST_F(SyntaxHighlighterCostTests, SeveralEditsAreColouredWithoutWhatIsBetweenThem) {
    for (qint64 place = 0; place < storage.length(); place += storage.length() / 10)
        storage.replaceCharacters({place, 0}, QStringView(u" "));
    EXPECT_LT(SyntaxHighlighter().highlight(storage, {0, 1}), 11 * little);
    expectColorsOfAFreshScan();
}

TEST_F(SyntaxHighlighterCostTests, OfALongScanLittleMoreThanItsStartIsStored) {
    constexpr qint64 few = 20'000;
    EXPECT_LT(storage.attributes().count(), few);
    cost({0, 0}, u"\"");
    EXPECT_LT(storage.attributes().count(), few);
    cost({0, 1}, u"");
    EXPECT_LT(storage.attributes().count(), few);
}

TEST_F(SyntaxHighlighterCostTests, AnEditInTheMidstStoresItsNeighbourhoodAlone) {
    const qint64 before = storage.attributes().count();
    cost({storage.length() / 2, 0}, u" ");
    EXPECT_LT(storage.attributes().count(), before + 8000);
    expectColorsOfAFreshScan();
}

TEST(SyntaxHighlighterCost, OfARunAUnitOnlyTheStartIsStored) {
    std::u16string text = u"[";
    while (text.size() < 2'000'000)
        text += u"1,";
    TextStorage storage(rope(text));
    highlightAll(storage);
    EXPECT_LT(storage.attributes().count(), 60'000);
    storage.replaceCharacters({0, 0}, QStringView(u"\""));
    SyntaxHighlighter().highlight(storage, {0, 1});
    EXPECT_EQ(storage.attributes().count(), 1);
    storage.replaceCharacters({0, 1}, QStringView());
    SyntaxHighlighter().highlight(storage, {0, 0});
    EXPECT_LT(storage.attributes().count(), 60'000);
    storage.attributes().checkInvariants();
    EXPECT_EQ(storage.attributes().runAfter(1'500'001).run, (AttributeRun{1, {ColorRole::blue}, true}));
}

TEST(SyntaxHighlighterCost, ATextOfOneLongStringIsScannedInFewPasses) {
    const std::u16string text = u"\"" + std::u16string(2'000'000, u'a') + u"\" : 1";
    TextStorage storage(rope(text));
    EXPECT_LT(SyntaxHighlighter().highlight(storage, {0, 0}), 4 * storage.length());
    EXPECT_EQ(storage.attributes().count(), 5);
    EXPECT_EQ(storage.attributes().runAfter(5).run.attributes.foreground, ColorRole::purple);
}

TEST(SyntaxHighlighterCost, BlanksBetweenAKeyAndItsColonMayBeLong) {
    const std::u16string text = u"[\"a\"" + std::u16string(1'000'000, u' ') + u":1, \"b\"]";
    TextStorage storage(rope(text));
    EXPECT_LT(SyntaxHighlighter().highlight(storage, {0, 0}), 4 * storage.length());
    EXPECT_EQ(storage.attributes().runAfter(1).run.attributes.foreground, ColorRole::purple);
}

} // namespace
} // namespace quelm
