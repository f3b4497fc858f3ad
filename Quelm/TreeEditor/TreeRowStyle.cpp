#include "Quelm/TreeEditor/TreeRowStyle.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TreeEditor/KindPresentation.h"

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

QFont italic(QFont font) {
    font.setItalic(true);
    return font;
}

} // namespace

TreeRowStyle::TreeRowStyle(const QPalette& palette)
    : key(systemFont(TextStyle::body, QFont::Medium)), index(monospacedDigitFont(TextStyle::body)),
      emptyKey(italic(systemFont(TextStyle::body))), count(systemFont(TextStyle::body)),
      value(monospacedFont(TextStyle::body)), badge(monospacedFont(TextStyle::smallCaption, QFont::Bold)),
      text(palette.color(QPalette::Text)), indentation(scaledPixels(16)), backgroundInset(scaledPixels(6)),
      backgroundRadius(scaledPixels(5)), contentInset(scaledPixels(14)), chevronWidth(scaledPixels(12)),
      chevronHeight(scaledPixels(16)), badgeWidth(scaledPixels(30)), badgeRadius(scaledPixels(4)),
      markSize(scaledPixels(13)), spacing(scaledPixels(7)), valueSpacing(scaledPixels(11)),
      leastFieldWidth(scaledPixels(120)), leastContentWidth(scaledPixels(360)) {
    const Appearance appearance = appearanceOf(palette);
    secondaryText = semanticColor(ColorRole::secondaryText, appearance);
    tertiaryText = semanticColor(ColorRole::tertiaryText, appearance);
    accent = semanticColor(ColorRole::accent, appearance);
    warning = semanticColor(ColorRole::warning, appearance);
    alternateRow = semanticColor(ColorRole::alternateRow, appearance);
    selection = semanticColor(ColorRole::selection, appearance);
    inactiveSelection = semanticColor(ColorRole::inactiveSelection, appearance);
    for (const NodeKind kind : allNodeKinds)
        kindColors[static_cast<std::size_t>(kind)] = semanticColor(quelm::kindColor(kind), appearance);

    const int verticalPadding = scaledPixels(1);
    badgeHeight = static_cast<int>(std::ceil(badge.metrics.height())) + 2 * verticalPadding;
    // A font with tall lines must not be cut off, whatever height looks best with the usual ones.
    const double tallest = std::max({key.metrics.height(), value.metrics.height(), double(badgeHeight)});
    rowHeight = std::max(scaledPixels(25), static_cast<int>(std::ceil(tallest)) + 4 * verticalPadding);
    verticalMargin = scaledPixels(6);
}

} // namespace quelm
