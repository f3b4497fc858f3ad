#pragma once

#include "Quelm/Foundation/Clock.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quelm {

/// A clock that stands still until a test lets time pass.
class FakeClock : public Clock {
public:
    DelayedCall callAfter(std::chrono::milliseconds delay, std::function<void()> call) override {
        auto entry = std::make_shared<Entry>(Entry{now_ + delay, std::move(call)});
        entries_.push_back(entry);
        return entry;
    }

    /// Makes the calls that fall due meanwhile, in the order of their times.
    void advance(std::chrono::milliseconds duration) {
        const std::chrono::milliseconds end = now_ + duration;
        while (const std::shared_ptr<Entry> next = takeNext(end)) {
            now_ = std::max(now_, next->time);
            next->call();
        }
        now_ = end;
    }

    /// How many calls are still to come.
    std::size_t pendingCount() const {
        return static_cast<std::size_t>(
            std::ranges::count_if(entries_, [](const std::weak_ptr<Entry>& entry) { return !entry.expired(); }));
    }

private:
    struct Entry {
        std::chrono::milliseconds time;
        std::function<void()> call;
    };

    std::shared_ptr<Entry> takeNext(std::chrono::milliseconds end) {
        std::erase_if(entries_, [](const std::weak_ptr<Entry>& entry) { return entry.expired(); });
        const auto next = std::ranges::min_element(entries_, {}, [](const auto& entry) { return entry.lock()->time; });
        if (next == entries_.end() || next->lock()->time > end)
            return nullptr;
        const std::shared_ptr<Entry> entry = next->lock();
        entries_.erase(next);
        return entry;
    }

    std::chrono::milliseconds now_{0};
    std::vector<std::weak_ptr<Entry>> entries_;
};

} // namespace quelm
