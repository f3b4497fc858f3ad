#include "Quelm/Application/AppDelegate.h"

#include <QEvent>
#include <QWidget>

namespace quelm {

void AppDelegate::observe(QWidget& window) {
    window.installEventFilter(this);
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        hasShownWindow_ = true;
        watched->removeEventFilter(this);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quelm
