#pragma once

#include <chrono>
#include <utility>

namespace quelm::bench {

/// The seconds that a piece of work takes on the steady clock.
template <typename Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    std::forward<Work>(work)();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Makes the compiler believe that a result is read, so that the work for it is not left out.
template <typename Value>
void keep(const Value& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

} // namespace quelm::bench
