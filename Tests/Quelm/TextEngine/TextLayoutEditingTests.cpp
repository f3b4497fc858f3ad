#include "Quelm/TextEngine/TextLayout.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>

namespace quelm {
namespace {

std::u16string randomText(std::mt19937& random, std::size_t pieces) {
    const std::u16string_view samples[] = {u"abc", u" ",    u"\n",      u"é",  u"漢字", u"\r\n", u"\t",
                                           u"😀",  u"שלום", u"e\u0301", u"\r", u"x",    u"\n",   u"una palabra "};
    std::u16string text;
    for (std::size_t piece = 0; piece < pieces; ++piece)
        text += samples[random() % std::size(samples)];
    if (random() % 12 == 0)
        text += std::u16string(random() % 6000, u'm');
    return text;
}

/// Both layouts, one of them new, agree on everything after every row was looked at.
void expectAsNew(LaidOutText& text, std::optional<double> wrapWidth) {
    TextLayout fresh(text.storage, text.layout.font());
    fresh.setWrapWidth(wrapWidth);
    for (qint64 line = 0; line < text.storage.lineCount(); ++line) {
        (void)text.layout.rowOf(text.storage.lineStart(line));
        (void)fresh.rowOf(text.storage.lineStart(line));
    }
    ASSERT_EQ(text.layout.rowCount(), fresh.rowCount());
    for (qint64 row = 0; row < fresh.rowCount(); ++row) {
        const TextRange range = fresh.rowRange(row);
        ASSERT_EQ(text.layout.rowRange(row), range) << row;
        ASSERT_EQ(text.layout.lineOf(row), fresh.lineOf(row));
        ASSERT_DOUBLE_EQ(text.layout.width(row), fresh.width(row)) << row;
        for (const qint64 offset : {range.location, range.location + range.length / 2, range.end()}) {
            ASSERT_DOUBLE_EQ(text.layout.x(offset), fresh.x(offset)) << offset;
            ASSERT_EQ(text.layout.rowOf(offset), fresh.rowOf(offset)) << offset;
        }
        const double middle = fresh.width(row) / 2;
        ASSERT_EQ(text.layout.offsetAt(row, middle), fresh.offsetAt(row, middle)) << row;
    }
}

/// Looks at a few rows, as a view does between edits, so that there is something that an edit must drop.
void look(const LaidOutText& text, std::mt19937& random) {
    for (int count = 0; count < 5; ++count)
        (void)text.layout.x(static_cast<qint64>(random() % static_cast<std::size_t>(text.storage.length() + 1)));
}

void expectEditsToAgree(unsigned seed, std::optional<double> columns) {
    std::mt19937 random(seed);
    LaidOutText text(randomText(random, 60));
    std::optional<double> width;
    if (columns)
        width = *columns * text.advance();
    text.layout.setWrapWidth(width);
    for (int step = 0; step < 60; ++step) {
        look(text, random);
        const auto length = static_cast<std::size_t>(text.storage.length());
        const std::size_t start = random() % (length + 1);
        const std::size_t end = std::min(length, start + random() % (random() % 8 == 0 ? 5000 : 12));
        const std::u16string inserted = randomText(random, random() % 6);
        text.storage.replaceCharacters(TextRange::between(static_cast<qint64>(start), static_cast<qint64>(end)),
                                       TextRope::repairing(std::u16string_view(inserted)));
        if (step % 6 == 0)
            expectAsNew(text, width);
    }
    expectAsNew(text, width);
}

TEST(TextLayoutEditing, RandomEditsGiveTheRowsOfANewLayout) {
    for (unsigned seed = 1; seed <= 4; ++seed)
        expectEditsToAgree(seed, std::nullopt);
}

TEST(TextLayoutEditing, RandomEditsGiveTheRowsOfANewWrappedLayout) {
    for (unsigned seed = 1; seed <= 4; ++seed)
        expectEditsToAgree(seed, 30.5);
}

TEST(TextLayoutEditing, AnEditElsewhereKeepsWhatIsLaidOut) {
    LaidOutText text(u"uno\ndosé\ntres\ncuatro");
    for (qint64 row = 0; row < 4; ++row)
        (void)text.layout.width(row);
    EXPECT_EQ(text.layout.cachedPartCount(), 4);
    text.storage.replaceCharacters({1, 0}, u"nuevo\nnuevo");
    EXPECT_EQ(text.layout.cachedPartCount(), 3);
    EXPECT_EQ(text.layout.rowCount(), 5);
    EXPECT_EQ(text.layout.rowRange(2), (TextRange{15, 4}));
    EXPECT_NEAR(text.layout.width(2), 4 * text.advance(), 0.25);
    EXPECT_EQ(text.layout.cachedPartCount(), 3);
}

TEST(TextLayoutEditing, ACompositionMovesWithTheText) {
    LaidOutText text(u"uno\ndos");
    text.layout.setComposition({6, QStringLiteral("xy"), 2});
    text.storage.replaceCharacters({0, 1}, u"muchos\n");
    EXPECT_EQ(text.layout.composition().offset, 12);
    EXPECT_NEAR(text.layout.caretX(12), 4 * text.advance(), 0.1);
}

} // namespace
} // namespace quelm
