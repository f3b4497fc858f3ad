#pragma once

#include <QBasicTimer>
#include <QObject>

namespace quelm {

/// Whether a caret is to be seen at this moment: it blinks as fast as the platform says, and not at all where the
/// platform says so.
class CaretBlinking : public QObject {
    Q_OBJECT

public:
    explicit CaretBlinking(QObject* parent = nullptr);

    bool isOn() const { return isOn_; }

    /// Shows the caret at once, for half a period at least: for whenever it has moved, or got the focus.
    void restart();
    /// Hides it until the next restart.
    void stop();

Q_SIGNALS:
    void changed();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void setOn(bool isOn);

    QBasicTimer timer_;
    bool isOn_ = false;
};

} // namespace quelm
