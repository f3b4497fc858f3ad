#pragma once

class QWidget;

namespace quelm {

/// Shows a window in front of all others, also one that is minimized, and gives it the keyboard.
void bringForward(QWidget& window);

} // namespace quelm
