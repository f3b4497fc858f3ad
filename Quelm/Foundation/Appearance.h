#pragma once

#include <QPalette>

#include <cstdint>

namespace quelm {

/// Whether windows are dark text on light or light text on dark.
enum class Appearance : std::uint8_t { light, dark };

/// The appearance that a palette asks for: dark when its text is lighter than its background.
Appearance appearanceOf(const QPalette& palette);

/// The appearance of the application's palette at this moment.
Appearance currentAppearance();

/// The palette of the application's own look, for platforms whose theme brings none.
QPalette ownPalette(Appearance appearance);

/// Whether the platform brings a palette: where it does, windows follow it.
bool platformHasPalette();

} // namespace quelm
