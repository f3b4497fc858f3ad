#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

namespace quelm {

/// How far a piece of work is: written by the thread that does it, read by any.
class WorkProgress {
public:
    /// In bytes as a rule; 0 while it is not known.
    void setTotal(std::int64_t total) { total_ = total; }
    void add(std::int64_t amount) { done_ += amount; }

    /// From 0 to 1; absent while the total is not known.
    std::optional<double> fraction() const {
        const std::int64_t total = total_;
        if (total <= 0)
            return std::nullopt;
        const double fraction = static_cast<double>(done_) / static_cast<double>(total);
        return fraction > 1 ? 1 : fraction;
    }

private:
    std::atomic<std::int64_t> total_ = 0;
    std::atomic<std::int64_t> done_ = 0;
};

} // namespace quelm
