#include "Quelm/TextEngine/TextLayout.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

QColor colorOf(ColorRole role) {
    switch (role) {
    case ColorRole::red:
        return Qt::red;
    case ColorRole::blue:
        return Qt::blue;
    case ColorRole::secondaryText:
        return Qt::green;
    case ColorRole::contentBackground:
        return Qt::white;
    default:
        return Qt::black;
    }
}

class Painted {
public:
    explicit Painted(const LaidOutText& text, double left = 0, double right = 500)
        : advance_(text.advance()), image_(500, 3 * text.layout.font().rowHeight(), QImage::Format_RGB32) {
        image_.fill(Qt::white);
        QPainter painter(&image_);
        painter.setRenderHint(QPainter::TextAntialiasing, false);
        painter.setPen(Qt::magenta);
        const int rowHeight = text.layout.font().rowHeight();
        text.layout.paint(painter, 0, {-left, static_cast<double>(rowHeight)}, left, right, colorOf);
        EXPECT_EQ(painter.pen().color(), QColor(Qt::magenta));
    }

    /// Whether something of a colour is between two columns (of the image).
    bool has(Qt::GlobalColor color, double fromColumn, double toColumn) const {
        const QColor wanted(color);
        for (int y = 0; y < image_.height(); ++y)
            for (int x = pixel(fromColumn); x < pixel(toColumn); ++x)
                if (isTintOf(image_.pixelColor(x, y), wanted))
                    return true;
        return false;
    }

    bool isBlank(double fromColumn, double toColumn) const {
        return isBlankIn(QRect(QPoint(pixel(fromColumn), 0), QPoint(pixel(toColumn) - 1, image_.height() - 1)));
    }

    /// Whether only the row itself was drawn on.
    bool isBlankAboveAndBelow() const {
        const int row = image_.height() / 3;
        return isBlankIn({0, 0, image_.width(), row}) && isBlankIn({0, 2 * row, image_.width(), row});
    }

    friend bool operator==(const Painted& left, const Painted& right) { return left.image_ == right.image_; }

private:
    int pixel(double column) const { return std::clamp(static_cast<int>(column * advance_), 0, image_.width()); }

    /// The colour itself or a shade of it towards white, but not white nor a shade of another.
    static bool isTintOf(QColor seen, QColor color) {
        if (seen == QColor(Qt::white) || color.saturation() != 0)
            return seen.saturation() > 100 && seen.hue() == color.hue();
        return seen.saturation() < 30 && seen.value() < 160;
    }

    bool isBlankIn(QRect area) const {
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                if (image_.pixelColor(x, y) != QColor(Qt::white))
                    return false;
        return true;
    }

    double advance_;
    QImage image_;
};

class Lines : public testing::TestWithParam<bool> {
protected:
    /// The text as a short line, or at the start of a long one.
    static std::u16string line(std::u16string_view start) {
        return GetParam() ? longLine(std::u16string(start) + std::u16string(60, u' ')) : std::u16string(start);
    }
};

TEST_P(Lines, ColorsAreWhereTheAttributesAre) {
    LaidOutText text(line(u"MMMM MMMM"));
    text.storage.setAttributes({0, 2}, {ColorRole::red});
    text.storage.setAttributes({5, 4}, {ColorRole::blue});
    const Painted painted(text);
    EXPECT_TRUE(painted.has(Qt::red, 0, 2));
    EXPECT_FALSE(painted.has(Qt::red, 2.2, 60));
    EXPECT_TRUE(painted.has(Qt::black, 2, 4));
    EXPECT_TRUE(painted.isBlank(4.2, 4.8));
    EXPECT_TRUE(painted.has(Qt::blue, 5, 9));
    EXPECT_FALSE(painted.has(Qt::blue, 0, 4.8));
    EXPECT_TRUE(painted.isBlank(9.2, 60));
    EXPECT_TRUE(painted.isBlankAboveAndBelow());
}

TEST_P(Lines, ColorsOfShapedTextAreWhereTheAttributesAre) {
    LaidOutText text(line(u"ÑÑÑÑ ÑÑÑÑ"));
    text.storage.setAttributes({0, 2}, {ColorRole::red});
    text.storage.setAttributes({5, 4}, {ColorRole::blue});
    const Painted painted(text);
    EXPECT_TRUE(painted.has(Qt::red, 0, 2));
    EXPECT_FALSE(painted.has(Qt::red, 2.2, 60));
    EXPECT_TRUE(painted.has(Qt::black, 2, 4));
    EXPECT_TRUE(painted.has(Qt::blue, 5, 9));
    EXPECT_FALSE(painted.has(Qt::blue, 0, 4.8));
    EXPECT_TRUE(painted.isBlank(9.2, 60));
}

TEST_P(Lines, ChangedAttributesChangeTheColorsOfWhatWasPaintedBefore) {
    LaidOutText text(line(u"ÑÑMM"));
    EXPECT_FALSE(Painted(text).has(Qt::red, 0, 60));
    text.storage.setAttributes({0, 4}, {ColorRole::red});
    const Painted painted(text);
    EXPECT_TRUE(painted.has(Qt::red, 0, 2));
    EXPECT_TRUE(painted.has(Qt::red, 2, 4));
    EXPECT_FALSE(painted.has(Qt::black, 0, 60));
}

TEST_P(Lines, SignsForUnseenCharactersHaveAColorOfTheirOwn) {
    LaidOutText text(line(u"aé\u0001\u2028z"));
    const Painted painted(text);
    EXPECT_TRUE(painted.has(Qt::green, 1.5, 6));
    EXPECT_FALSE(painted.has(Qt::green, 0, 1.5));
}

TEST_P(Lines, ACompositionIsPaintedAndUnderlined) {
    LaidOutText text(line(u"    "));
    const Painted before(text);
    EXPECT_TRUE(before.isBlank(0, 60));
    text.layout.setComposition({1, QStringLiteral("   "), 3});
    const Painted underlined(text);
    EXPECT_TRUE(underlined.isBlank(0, 0.9));
    EXPECT_TRUE(underlined.has(Qt::black, 1, 4));
    EXPECT_TRUE(underlined.isBlank(4.2, 60));
    text.layout.setComposition({1, QStringLiteral("MñM"), 3});
    EXPECT_FALSE(Painted(text) == underlined);
    text.layout.setComposition({});
    EXPECT_TRUE(Painted(text) == before);
}

TEST_P(Lines, OnlyWhatMeetsTheBoundsIsPainted) {
    const LaidOutText text(line(std::u16string(30, u'M') + std::u16string(8, u' ') + std::u16string(10, u'M')));
    EXPECT_TRUE(Painted(text, 0, 10 * text.advance()).isBlank(14, 60));
    EXPECT_TRUE(Painted(text, 0, 10 * text.advance()).has(Qt::black, 9, 10));
}

TEST_P(Lines, ScrollingMovesWhatIsPainted) {
    const LaidOutText text(line(u"    M    "));
    EXPECT_TRUE(Painted(text, 2 * text.advance()).has(Qt::black, 2, 3));
    EXPECT_TRUE(Painted(text, 2 * text.advance()).isBlank(3.2, 40));
}

INSTANTIATE_TEST_SUITE_P(ShortAndLong, Lines, testing::Bool());

TEST(TextLayoutPainting, FarToTheRightInAVeryLongLineTextIsPaintedInPlace) {
    std::u16string line(8'000'000, u' ');
    line[7'999'004] = u'M';
    line[7'999'006] = u'Ñ';
    const LaidOutText text(line);
    const Painted painted(text, 7'999'000 * text.advance(), 7'999'000 * text.advance() + 500);
    EXPECT_TRUE(painted.isBlank(0, 3.8));
    EXPECT_TRUE(painted.has(Qt::black, 4, 5));
    EXPECT_TRUE(painted.isBlank(5.2, 5.8));
    EXPECT_TRUE(painted.has(Qt::black, 6, 7));
    EXPECT_TRUE(painted.isBlank(7.2, 60));
}

} // namespace
} // namespace quelm
