#pragma once

class QMainWindow;

namespace quelm {

/// Gives a window its menu "Ayuda": the keys, and what program this is.
void addHelpMenu(QMainWindow& window);

} // namespace quelm
