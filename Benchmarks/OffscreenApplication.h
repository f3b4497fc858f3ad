#pragma once

#include "Benchmarks/Window/WatchedApplication.h"

namespace quelm::bench {

/// What a group that measures windows runs in: the program's look on a platform without a screen, unless
/// QT_QPA_PLATFORM names another. One at a time.
class OffscreenApplication {
public:
    OffscreenApplication();

    WatchedApplication& watched() { return application_; }

private:
    int count_ = 1;
    char name_[12] = "quelm-bench";
    char* arguments_[2] = {name_, nullptr};
    WatchedApplication application_;
};

} // namespace quelm::bench
