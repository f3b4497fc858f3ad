#include "Quelm/Foundation/SemanticColors.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace quelm {
namespace {

double luminance(const QColor& color) {
    const auto linear = [](float channel) {
        return channel <= 0.04045F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// The contrast ratio of the Web Content Accessibility Guidelines.
double contrast(const QColor& left, const QColor& right) {
    const auto [dark, light] = std::minmax({luminance(left), luminance(right)});
    return (light + 0.05) / (dark + 0.05);
}

QColor over(const QColor& top, const QColor& bottom) {
    const float alpha = top.alphaF();
    const auto mix = [alpha](float above, float below) { return above * alpha + below * (1 - alpha); };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

class SemanticColorsTests : public testing::TestWithParam<Appearance> {
protected:
    QColor color(ColorRole role) { return semanticColor(role, GetParam()); }

    std::vector<QColor> rowBackgrounds() {
        const QColor base = color(ColorRole::contentBackground);
        return {base, over(color(ColorRole::alternateRow), base), over(color(ColorRole::selection), base),
                over(color(ColorRole::inactiveSelection), base)};
    }
};

constexpr std::array readableRoles{ColorRole::purple, ColorRole::indigo,        ColorRole::green,
                                   ColorRole::blue,   ColorRole::orange,        ColorRole::gray,
                                   ColorRole::red,    ColorRole::secondaryText, ColorRole::text};

TEST_P(SemanticColorsTests, TextsCanBeReadOnEveryBackgroundOfARow) {
    for (const QColor& background : rowBackgrounds())
        for (const ColorRole role : readableRoles)
            EXPECT_GE(contrast(color(role), background), 4.5)
                << static_cast<int>(role) << " on " << background.name().toStdString();
}

TEST_P(SemanticColorsTests, TextsCanBeReadOnAWindow) {
    for (const ColorRole role : readableRoles)
        EXPECT_GE(contrast(color(role), color(ColorRole::windowBackground)), 4.5) << static_cast<int>(role);
}

TEST_P(SemanticColorsTests, SelectedTextCanBeReadAndStandsOutFromASelectedRow) {
    const QColor base = color(ColorRole::contentBackground);
    const QColor selected = over(color(ColorRole::textSelection), base);
    for (const ColorRole role : readableRoles)
        EXPECT_GE(contrast(color(role), selected), 4.5) << static_cast<int>(role);
    EXPECT_GE(contrast(selected, over(color(ColorRole::selection), base)), 1.15);
}

TEST_P(SemanticColorsTests, BadgesCanBeReadOnTheirTint) {
    for (const QColor& background : rowBackgrounds()) {
        for (const ColorRole role : {ColorRole::purple, ColorRole::indigo, ColorRole::green, ColorRole::blue,
                                     ColorRole::orange, ColorRole::gray}) {
            QColor tint = color(role);
            tint.setAlphaF(static_cast<float>(badgeOpacity));
            EXPECT_GE(contrast(color(role), over(tint, background)), 4.5) << static_cast<int>(role);
        }
    }
}

TEST_P(SemanticColorsTests, SymbolsStandOutFromEveryBackgroundOfARow) {
    for (const QColor& background : rowBackgrounds())
        EXPECT_GE(contrast(color(ColorRole::warning), background), 3.0);
}

TEST_P(SemanticColorsTests, TertiaryTextIsFainterThanSecondaryTextAndStandsOut) {
    const QColor background = color(ColorRole::contentBackground);
    EXPECT_GE(contrast(color(ColorRole::tertiaryText), background), 3.0);
    EXPECT_LT(contrast(color(ColorRole::tertiaryText), background),
              contrast(color(ColorRole::secondaryText), background));
}

TEST_P(SemanticColorsTests, SelectedTextCanBeReadOnTheAccent) {
    EXPECT_GE(contrast(color(ColorRole::accentText), color(ColorRole::accent)), 4.5);
}

TEST_P(SemanticColorsTests, WindowTextCanBeReadInTheOwnPalette) {
    const QPalette palette = ownPalette(GetParam());
    for (const auto& [text, background] :
         {std::pair{QPalette::WindowText, QPalette::Window}, std::pair{QPalette::ButtonText, QPalette::Button},
          std::pair{QPalette::Text, QPalette::Base}, std::pair{QPalette::ToolTipText, QPalette::ToolTipBase},
          std::pair{QPalette::PlaceholderText, QPalette::Base}})
        EXPECT_GE(contrast(palette.color(text), palette.color(background)), 4.5) << text;
}

TEST_P(SemanticColorsTests, TheOwnPaletteHasTheAppearanceItIsMadeFor) {
    EXPECT_EQ(appearanceOf(ownPalette(GetParam())), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Appearances, SemanticColorsTests, testing::Values(Appearance::light, Appearance::dark));

TEST(AppearanceTests, LightTextOnADarkWindowIsDark) {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(40, 40, 48));
    palette.setColor(QPalette::WindowText, QColor(230, 230, 230));
    EXPECT_EQ(appearanceOf(palette), Appearance::dark);
    palette.setColor(QPalette::Window, QColor(250, 250, 250));
    palette.setColor(QPalette::WindowText, QColor(10, 10, 10));
    EXPECT_EQ(appearanceOf(palette), Appearance::light);
}

} // namespace
} // namespace quelm
