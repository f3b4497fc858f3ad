#pragma once

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

namespace quelm {

/// Runs `dispose` soon: on another thread when this is the main one, else here and now. It must not throw.
void runDisposal(std::function<void()> dispose);

/// Holds a tree, a text or whatever else takes a time to free that grows with it, and frees it off the main thread.
/// Copies hold the same value, which goes with the last of them. An empty one, also one that was moved from, costs
/// nothing. For any thread, one at a time; what is freed must not care which one that is.
template <class Value>
class DisposedInBackground {
public:
    DisposedInBackground() = default;
    explicit DisposedInBackground(Value value)
        : value_(new std::optional<Value>(std::move(value)), [](std::optional<Value>* held) { dispose(held); }) {}

    bool isEmpty() const { return !value_ || !*value_; }

    /// It must not be empty.
    const Value& operator*() const { return **value_; }

    /// Gives the value away: all copies are empty afterwards. There must be one.
    Value take() const {
        Value value = *std::move(*value_);
        value_->reset();
        return value;
    }

private:
    static void dispose(std::optional<Value>* held) {
        if (std::is_trivially_destructible_v<Value> || !*held) {
            delete held;
            return;
        }
        try {
            runDisposal([held] { delete held; });
        } catch (const std::bad_alloc&) {
            delete held;
        }
    }

    std::shared_ptr<std::optional<Value>> value_;
};

/// Lets go of such a value off the main thread.
template <class Value>
void disposeInBackground(Value value) {
    try {
        const DisposedInBackground<Value> last(std::move(value));
    } catch (const std::bad_alloc&) {
        // It is freed here, then.
    }
}

/// The same of what there is.
template <class Value>
void disposeInBackground(std::optional<Value> value) {
    if (value)
        disposeInBackground(*std::move(value));
}

} // namespace quelm
