#include "Quelm/Foundation/Fonts.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(FontsTests, SizesArePixelsUnderTheFontScale) {
    EXPECT_EQ(systemFont(TextStyle::body).pixelSize(), scaledPixels(13));
    EXPECT_EQ(systemFont(TextStyle::caption).pixelSize(), scaledPixels(11));
    EXPECT_EQ(monospacedFont(TextStyle::smallCaption).pixelSize(), scaledPixels(10));
}

TEST(FontsTests, ALengthAboveZeroNeverVanishes) {
    EXPECT_GE(scaledPixels(0.01), 1);
    EXPECT_EQ(scaledPixels(0), 0);
}

TEST(FontsTests, WeightsAreKept) {
    EXPECT_EQ(systemFont(TextStyle::body, QFont::Medium).weight(), QFont::Medium);
    EXPECT_EQ(monospacedFont(TextStyle::smallCaption, QFont::Bold).weight(), QFont::Bold);
}

TEST(FontsTests, TheMonospacedFontHasOneWidth) {
    const QFontMetricsF metrics(monospacedFont(TextStyle::body));
    EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("iiii")), metrics.horizontalAdvance(QStringLiteral("MMMM")));
}

TEST(FontsTests, DigitsOfAnIndexHaveOneWidth) {
    const QFontMetricsF metrics(monospacedDigitFont(TextStyle::body));
    EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("1111")), metrics.horizontalAdvance(QStringLiteral("8888")));
}

} // namespace
} // namespace quelm
