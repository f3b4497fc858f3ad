#include "Benchmarks/Text/Editor.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace quelm::bench {

void Editor::show() {
    window().resize(1500, 1000);
    window().show();
    window().activateWindow();
    keyboardTarget().setFocus();
    settle();
}

void Editor::press(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(&keyboardTarget(), &press);
    settle();
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(&keyboardTarget(), &release);
}

void Editor::click(QPoint place) {
    const QPointF local(place);
    const QPointF global = mouseTarget().mapToGlobal(local);
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&mouseTarget(), &press);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&mouseTarget(), &release);
    settle();
}

void Editor::settle() {
    // Painting is asked for by a posted event, and what runs at once afterwards may ask for more.
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
}

} // namespace quelm::bench
