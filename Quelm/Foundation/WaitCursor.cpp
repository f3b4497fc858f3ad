#include "Quelm/Foundation/WaitCursor.h"

#include <QCursor>
#include <QGuiApplication>

namespace quelm {

WaitCursor::WaitCursor(bool isWanted) : isShown_(isWanted && qobject_cast<QGuiApplication*>(qApp)) {
    if (isShown_)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor() {
    if (isShown_)
        QGuiApplication::restoreOverrideCursor();
}

} // namespace quelm
