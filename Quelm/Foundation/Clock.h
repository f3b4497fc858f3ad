#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quelm {

/// A call that is still to come, or has been; letting go of it before then cancels it.
using DelayedCall = std::shared_ptr<void>;

/// What pauses and delays are counted by; tests bring a clock of their own. For the main thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// Calls once, from the event loop, when the delay has passed: never from within this function. What is called may
    /// let go of the call.
    virtual DelayedCall callAfter(std::chrono::milliseconds delay, std::function<void()> call) = 0;

    /// The monotonic clock of the system.
    static Clock& system();
};

} // namespace quelm
