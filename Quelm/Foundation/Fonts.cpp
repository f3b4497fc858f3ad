#include "Quelm/Foundation/Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <cmath>

namespace quelm {

namespace {

#ifdef Q_OS_MACOS
constexpr double unscaledDotsPerInch = 72;
#else
constexpr double unscaledDotsPerInch = 96;
#endif

double pointSize(TextStyle style) {
    constexpr std::array<double, 3> sizes{13, 11, 10};
    return sizes[static_cast<std::size_t>(style)];
}

QFont sized(QFont font, TextStyle style, QFont::Weight weight) {
    font.setPixelSize(scaledPixels(pointSize(style)));
    font.setWeight(weight);
    return font;
}

} // namespace

double fontScale() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() / unscaledDotsPerInch : 1;
}

int scaledPixels(double points) {
    const auto pixels = static_cast<int>(std::lround(points * fontScale()));
    return points > 0 ? std::max(pixels, 1) : pixels;
}

QFont systemFont(TextStyle style, QFont::Weight weight) {
    return sized(QFontDatabase::systemFont(QFontDatabase::GeneralFont), style, weight);
}

QFont monospacedFont(TextStyle style, QFont::Weight weight) {
    return sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), style, weight);
}

QFont monospacedDigitFont(TextStyle style) {
    const QFont proportional = systemFont(style);
    const QFontMetricsF metrics(proportional);
    const double width = metrics.horizontalAdvance(u'0');
    for (char16_t digit = u'1'; digit <= u'9'; ++digit)
        if (metrics.horizontalAdvance(QChar(digit)) != width)
            return monospacedFont(style);
    return proportional;
}

} // namespace quelm
