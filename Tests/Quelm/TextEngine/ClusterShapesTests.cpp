#include "Quelm/TextEngine/ClusterShapes.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <QTextLayout>

#include <algorithm>
#include <gtest/gtest.h>
#include <span>

namespace quelm {
namespace {

bool areSame(std::span<const ClusterShapes::Glyph> left, std::span<const ClusterShapes::Glyph> right) {
    return std::ranges::equal(left, right, [](const ClusterShapes::Glyph& one, const ClusterShapes::Glyph& other) {
        return one.font == other.font && one.index == other.index && (one.place - other.place).manhattanLength() < 0.05;
    });
}

TEST(ClusterShapes, AClusterIsShapedOnce) {
    ClusterShapes shapes(testFont());
    for (const QString& cluster : {u"ñ"_qs, u"n\u0303"_qs, u"漢"_qs, u"👨‍👩‍👧‍👦"_qs})
        EXPECT_EQ(&shapes.shape(cluster), &shapes.shape(cluster));
    EXPECT_EQ(shapes.longerCount(), 2U);
}

TEST(ClusterShapes, WidthAndGlyphsAreThoseOfTheFont) {
    ClusterShapes shapes(testFont());
    EXPECT_NEAR(shapes.shape(u"ñ").width, shapes.font().advance(), 0.1);
    const auto glyphs = shapes.glyphs(shapes.shape(u"ñ"));
    ASSERT_EQ(glyphs.size(), 1U);
    EXPECT_EQ(shapes.fonts()[glyphs[0].font].font.glyphIndexesForString(u"ñ"_qs).value(0), glyphs[0].index);
}

TEST(ClusterShapes, WhatIsUnseenHasAShapeToo) {
    ClusterShapes shapes(testFont());
    EXPECT_EQ(shapes.shape(u"\u200B").width, 0);
    EXPECT_NEAR(shapes.shape(u"\u00A0").width, shapes.font().advance(), 0.1);
}

TEST(ClusterShapes, ShapesMadeTogetherAreThoseMadeOneByOne) {
    QString text;
    for (char16_t unit = 0x4E00; unit < 0x4E00 + 150; ++unit)
        text += QChar(unit);
    text += u"ひらがなカタカナ한국어。、ㄅ㍿"_qs;
    ClusterShapes together(testFont());
    ClusterShapes alone(testFont());
    together.prepare(text);
    for (const QChar unit : std::as_const(text)) {
        const QStringView cluster(&unit, 1);
        const ClusterShapes::Shape& shape = together.shape(cluster);
        const ClusterShapes::Shape& other = alone.shape(cluster);
        EXPECT_NEAR(shape.width, other.width, 0.05) << int{unit.unicode()};
        EXPECT_TRUE(areSame(together.glyphs(shape), alone.glyphs(other))) << int{unit.unicode()};
    }
}

TEST(ClusterShapes, SharedOnesAreBounded) {
    SharedClusterShapes shared(testFont());
    const std::shared_ptr<ClusterShapes> first = shared.current();
    for (std::size_t index = 0; index < SharedClusterShapes::capacity; ++index) {
        ASSERT_EQ(shared.current(), first);
        QString cluster = u"x\u0301\u0301"_qs;
        cluster += QChar(static_cast<char16_t>(0x0300 + index % 64));
        cluster += QChar(static_cast<char16_t>(0x0300 + index / 64 % 64));
        cluster += QChar(static_cast<char16_t>(0x0300 + index / 4096));
        (void)first->shape(cluster);
    }
    EXPECT_EQ(first->longerCount(), SharedClusterShapes::capacity);
    EXPECT_NE(shared.current(), first);
    EXPECT_EQ(shared.current()->longerCount(), 0U);
    EXPECT_DOUBLE_EQ(shared.current()->font().advance(), first->font().advance());
}

TEST(ClusterShapes, AnotherFontBeginsOthers) {
    SharedClusterShapes shared(testFont());
    const double before = shared.current()->shape(u"ñ").width;
    QFont large = monospacedFont(TextStyle::body);
    large.setPixelSize(60);
    shared.setFont(TextFont(large));
    EXPECT_GT(shared.current()->shape(u"ñ").width, 2 * before);
}

} // namespace
} // namespace quelm
