#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>
#include <QRect>

namespace quelm {

/// Scrolls again and again while the mouse is held outside of an area: the faster, the further away it is.
class DragScrolling : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The mouse is there. Scrolls while it is outside of the area.
    void follow(const QPoint& place, const QRect& area);
    void stop();
    bool isRunning() const { return timer_.isActive(); }

Q_SIGNALS:
    /// The content is to be scrolled by so many pixels, to the right and down when positive.
    void stepped(const QPoint& distance);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    QBasicTimer timer_;
    QPoint step_;
};

} // namespace quelm
