#pragma once

class QMessageBox;
class QWidget;

namespace quelm {

/// Says what program this is and returns at once; the box belongs to the window and deletes itself when it is closed.
QMessageBox* showAboutBox(QWidget& window);

} // namespace quelm
