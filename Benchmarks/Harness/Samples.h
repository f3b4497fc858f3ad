#pragma once

#include <cstddef>
#include <vector>

namespace quelm::bench {

/// Measured durations in seconds.
class Samples {
public:
    void add(double seconds) { seconds_.push_back(seconds); }

    std::size_t size() const { return seconds_.size(); }
    bool empty() const { return seconds_.empty(); }

    /// The smallest sample that `percent` (0 to 100) of all do not exceed. There must be samples; O(n).
    double percentile(double percent) const;
    double median() const { return percentile(50); }
    double largest() const { return percentile(100); }

private:
    std::vector<double> seconds_;
};

} // namespace quelm::bench
