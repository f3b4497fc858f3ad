#include "Quelm/Application/BringForward.h"

#include <QWidget>

namespace quelm {

void bringForward(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace quelm
