#include "Quelm/TextEngine/TextFont.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QTextLayout>

#include <cmath>
#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(TextFont, EveryPrintableCharacterFitsIntoTheAdvance) {
    const TextFont font = testFont();
    const QFontMetricsF metrics(font.font());
    for (char16_t unit = u' '; unit <= u'~'; ++unit)
        EXPECT_LE(metrics.horizontalAdvance(QChar(unit)), font.advance() + 0.5) << int{unit};
}

TEST(TextFont, TheAdvanceIsThatOfShapedText) {
    const TextFont font = testFont();
    QTextLayout layout(QString(100, u'a'), font.font());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(100'000);
    layout.endLayout();
    EXPECT_NEAR(line.naturalTextWidth(), 100 * font.advance(), 1);
}

TEST(TextFont, TheRowHoldsTheFontFromTopToBottom) {
    const TextFont font = testFont();
    const QFontMetricsF metrics(font.font());
    EXPECT_GE(font.ascent(), std::floor(metrics.ascent()));
    EXPECT_GE(font.rowHeight() - font.ascent(), std::floor(metrics.descent()));
    EXPECT_LT(font.rowHeight(), 2 * metrics.height());
}

TEST(TextFont, HasAGlyphForEveryPrintableCharacter) {
    const TextFont font = testFont();
    for (char16_t unit = u' '; unit <= u'~'; ++unit)
        EXPECT_NE(font.glyph(unit), 0U) << int{unit};
    EXPECT_NE(font.glyph(u'a'), font.glyph(u'b'));
}

TEST(TextFont, AProportionalFontHasTheAdvanceOfItsWidestCharacter) {
    const TextFont font(systemFont(TextStyle::body));
    const QFontMetricsF metrics(font.font());
    EXPECT_GE(font.advance() + 0.5, metrics.horizontalAdvance(u'W'));
    EXPECT_GT(font.advance(), metrics.horizontalAdvance(u'i'));
}

TEST(TextFont, ALineUnderTheTextIsWithinTheRow) {
    const TextFont font = testFont();
    const QRectF line = font.underline({10, font.ascent() + 0.0}, 5, 25);
    EXPECT_EQ(line.left(), 15);
    EXPECT_EQ(line.width(), 20);
    EXPECT_GT(line.top(), font.ascent());
    EXPECT_LE(line.bottom(), font.rowHeight());
}

} // namespace
} // namespace quelm
