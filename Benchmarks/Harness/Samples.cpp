#include "Benchmarks/Harness/Samples.h"

#include <algorithm>
#include <cmath>

namespace quelm::bench {

double Samples::percentile(double percent) const {
    std::vector<double> ordered = seconds_;
    const double rank = std::ceil(percent / 100 * static_cast<double>(ordered.size()));
    const auto position = ordered.begin() + std::max<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(rank) - 1, 0);
    std::nth_element(ordered.begin(), position, ordered.end());
    return *position;
}

} // namespace quelm::bench
