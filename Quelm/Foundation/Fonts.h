#pragma once

#include <QFont>

#include <cstdint>

namespace quelm {

/// The sizes of text in the windows, in logical points: 13, 11 and 10.
enum class TextStyle : std::uint8_t { body, caption, smallCaption };

/// The system's font scale: 1 where text of 96 dots an inch is asked for (72 on macOS). Pixels are logical: the device
/// pixel ratio has no part in it.
double fontScale();

/// A length in logical points as whole logical pixels under the font scale; at least 1 for a positive length.
int scaledPixels(double points);

/// The system's proportional font.
QFont systemFont(TextStyle style, QFont::Weight weight = QFont::Normal);

/// The system's fixed-pitch font.
QFont monospacedFont(TextStyle style, QFont::Weight weight = QFont::Normal);

/// The proportional font when its digits are of one width, else the fixed-pitch one.
QFont monospacedDigitFont(TextStyle style);

} // namespace quelm
