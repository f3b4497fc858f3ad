#pragma once

#include "Quelm/Foundation/Appearance.h"

#include <QColor>

#include <array>
#include <cstdint>

namespace quelm {

/// What a colour stands for. Texts in the colours from `purple` to `secondaryText` can be read (a contrast of 4.5 to 1
/// or more) on the content background, its alternate rows, the selections and (but for that of text) the tint of their
/// own badge.
enum class ColorRole : std::uint8_t {
    purple,
    indigo,
    green,
    blue,
    orange,
    gray,
    red,
    secondaryText,
    text,
    /// For what is there to be looked up rather than read, such as line numbers: 3 to 1 on the content background.
    tertiaryText,
    /// For symbols only, which a lower contrast suffices.
    warning,
    disabledText,
    windowBackground,
    contentBackground,
    controlBackground,
    tooltipBackground,
    separator,
    accent,
    accentText,
    /// The next four are translucent and laid over the content background, whichever that is.
    alternateRow,
    selection,
    inactiveSelection,
    /// Of characters in a text that has the focus: stronger than that of rows, which it may stand in.
    textSelection,
};

inline constexpr std::size_t colorRoleCount = static_cast<std::size_t>(ColorRole::textSelection) + 1;

QColor semanticColor(ColorRole role, Appearance appearance);

/// The same in the application's appearance at this moment.
QColor semanticColor(ColorRole role);

/// How strongly a badge is tinted with the colour of its text.
inline constexpr double badgeOpacity = 0.12;

} // namespace quelm
