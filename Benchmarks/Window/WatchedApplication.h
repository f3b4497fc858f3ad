#pragma once

#include <QApplication>

#include <string>

namespace quelm::bench {

/// Times whatever the main thread does between two looks at its event queue: while it does, the window neither paints
/// nor answers.
class WatchedApplication : public QApplication {
public:
    using QApplication::QApplication;

    /// The longest stretch since the last `restart`.
    struct Stretch {
        double seconds = 0;
        /// The event that it was, as in "QFutureWatcher<void> 43"; or what was called.
        std::string what;
    };
    const Stretch& longest() const { return longest_; }
    void restart() { longest_ = {}; }

    /// Calls something that an event would call.
    template <typename Work>
    void call(const char* name, Work&& work) {
        const Timing timing(*this, name, -1);
        std::forward<Work>(work)();
    }

    bool notify(QObject* receiver, QEvent* event) override;

private:
    /// Counts as one stretch from beginning to end, with all that happens inside of it.
    class Timing {
    public:
        Timing(WatchedApplication& application, const char* name, int eventType);
        ~Timing();
        Timing(const Timing&) = delete;
        Timing& operator=(const Timing&) = delete;

    private:
        WatchedApplication& application_;
        const char* name_;
        int eventType_;
        double start_;
    };

    Stretch longest_;
    int depth_ = 0;
};

} // namespace quelm::bench
