#include "Quelm/Foundation/Symbols.h"

#include <QImage>

#include <gtest/gtest.h>

namespace quelm {
namespace {

constexpr std::array names{"arrow.down.right.and.arrow.up.left",
                           "checkmark.circle.fill",
                           "chevron.down",
                           "chevron.right",
                           "chevron.up",
                           "circle.dashed",
                           "curlybraces",
                           "exclamationmark.triangle.fill",
                           "info.circle",
                           "list.bullet.indent",
                           "magnifyingglass",
                           "pencil.line",
                           "repeat",
                           "square.and.arrow.up",
                           "text.alignleft",
                           "textformat",
                           "trash",
                           "xmark",
                           "xmark.octagon.fill"};

QImage painted(const QString& name, double ratio, double degrees = 0) {
    QImage image(QSize(16, 16) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintSymbol(painter, name, QRectF(0, 0, 16, 16), Qt::red, degrees);
    return image;
}

int opaquePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) == 255;
    return count;
}

TEST(SymbolsTests, EverySymbolIsPaintedInTheColourAskedFor) {
    for (const char* name : names) {
        const QImage image = painted(QLatin1String(name), 2);
        EXPECT_GT(opaquePixels(image), 20) << name;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ASSERT_EQ(qGreen(image.pixel(x, y)), 0) << name;
    }
}

TEST(SymbolsTests, ASymbolIsRenderedAtTheDevicesOwnPixels) {
    // A picture that was enlarged would be nothing but copies of pixels.
    for (const double ratio : {1.5, 2.0, 3.0}) {
        const QImage small = painted(QStringLiteral("xmark.octagon.fill"), 1);
        const QImage image = painted(QStringLiteral("xmark.octagon.fill"), ratio);
        EXPECT_NE(image, small.scaled(image.size())) << ratio;
        EXPECT_GT(opaquePixels(image), opaquePixels(small) * ratio * ratio * 0.9) << ratio;
    }
}

TEST(SymbolsTests, StraightStrokesAreCrispAtTwoPixelsAPoint) {
    const QImage image = painted(QStringLiteral("text.alignleft"), 2);
    const int middle = 10;
    for (int y = 0; y < image.height(); ++y) {
        const int alpha = qAlpha(image.pixel(middle, y));
        EXPECT_TRUE(alpha == 0 || alpha == 255) << y << ": " << alpha;
    }
}

TEST(SymbolsTests, AQuarterTurnIsTheDrawingTurned) {
    const QImage straight = painted(QStringLiteral("chevron.right"), 2);
    const QImage turned = painted(QStringLiteral("chevron.right"), 2, 90);
    const QImage expected = straight.transformed(QTransform().rotate(90));
    int differences = 0;
    for (int y = 0; y < turned.height(); ++y)
        for (int x = 0; x < turned.width(); ++x)
            differences += std::abs(qAlpha(turned.pixel(x, y)) - qAlpha(expected.pixel(x, y))) > 64;
    EXPECT_EQ(differences, 0);
    EXPECT_NE(turned, straight);
}

TEST(SymbolsTests, AnIconIsDimmedWhenItIsDisabled) {
    const QIcon icon = symbolIcon(QStringLiteral("info.circle"), ColorRole::blue);
    const QImage enabled = icon.pixmap(QSize(16, 16), 1.0, QIcon::Normal).toImage();
    const QImage disabled = icon.pixmap(QSize(16, 16), 1.0, QIcon::Disabled).toImage();
    EXPECT_EQ(enabled.size(), QSize(16, 16));
    EXPECT_NE(enabled, disabled);
}

TEST(SymbolsDeathTests, ANameWithoutADrawingIsAProgrammingError) {
    EXPECT_DEATH(painted(QStringLiteral("no.such.symbol"), 1), "every symbol that is named has a drawing");
}

} // namespace
} // namespace quelm
