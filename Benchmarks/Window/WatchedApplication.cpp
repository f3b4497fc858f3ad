#include "Benchmarks/Window/WatchedApplication.h"

#include <QEvent>

#include <chrono>

namespace quelm::bench {

namespace {

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

WatchedApplication::Timing::Timing(WatchedApplication& application, const char* name, int eventType)
    : application_(application), name_(name), eventType_(eventType), start_(now()) {
    ++application_.depth_;
}

WatchedApplication::Timing::~Timing() {
    if (--application_.depth_ > 0)
        return;
    const double seconds = now() - start_;
    if (seconds > application_.longest_.seconds)
        application_.longest_ = {seconds,
                                 eventType_ < 0 ? std::string(name_) : name_ + (" " + std::to_string(eventType_))};
}

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
    // The receiver may be gone afterwards; the name of its class is not.
    const Timing timing(*this, receiver->metaObject()->className(), event->type());
    return QApplication::notify(receiver, event);
}

} // namespace quelm::bench
