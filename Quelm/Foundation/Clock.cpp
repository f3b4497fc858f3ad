#include "Quelm/Foundation/Clock.h"

#include <QTimer>

namespace quelm {

namespace {

class SystemClock : public Clock {
public:
    DelayedCall callAfter(std::chrono::milliseconds delay, std::function<void()> call) override {
        // What is called may let go of the timer that calls it.
        const auto deleter = [](QTimer* timer) {
            timer->stop();
            timer->deleteLater();
        };
        const std::shared_ptr<QTimer> timer(new QTimer, deleter);
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer.get(), &QTimer::timeout, timer.get(), std::move(call));
        timer->start(delay);
        return timer;
    }
};

} // namespace

Clock& Clock::system() {
    static SystemClock clock;
    return clock;
}

} // namespace quelm
