#include "Quelm/TextEngine/CaretBlinking.h"

#include <QApplication>
#include <QStyleHints>
#include <QTimerEvent>

namespace quelm {

CaretBlinking::CaretBlinking(QObject* parent) : QObject(parent) {
    connect(QGuiApplication::styleHints(), &QStyleHints::cursorFlashTimeChanged, this, [this] {
        if (timer_.isActive() || isOn_)
            restart();
    });
}

void CaretBlinking::restart() {
    const int halfPeriod = QApplication::cursorFlashTime() / 2;
    if (halfPeriod > 0)
        timer_.start(halfPeriod, this);
    else
        timer_.stop();
    setOn(true);
}

void CaretBlinking::stop() {
    timer_.stop();
    setOn(false);
}

void CaretBlinking::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId())
        setOn(!isOn_);
}

void CaretBlinking::setOn(bool isOn) {
    if (isOn == isOn_)
        return;
    isOn_ = isOn;
    Q_EMIT changed();
}

} // namespace quelm
