#include "Benchmarks/Harness/Report.h"

#include <cmath>
#include <cstdio>
#include <string>

namespace quelm::bench::report {

namespace {

/// Three significant digits without an exponent, at most the whole number.
std::string threeDigits(double number) {
    int decimals = 2;
    if (number > 0)
        decimals = std::max(0, 2 - static_cast<int>(std::floor(std::log10(number))));
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", std::min(decimals, 9), number);
    return text;
}

void print(std::string_view kind, std::string_view what, const std::string& result) {
    std::printf("%.*s %.*s %s\n", static_cast<int>(kind.size()), kind.data(), static_cast<int>(what.size()),
                what.data(), result.c_str());
    std::fflush(stdout);
}

} // namespace

void ratio(std::string_view what, std::string_view peer, Speed ours, Speed theirs) {
    char text[160];
    std::snprintf(text, sizeof text, "%.*s %.2f (ours %.0f MB/s, peer %.0f MB/s)", static_cast<int>(peer.size()),
                  peer.data(), ours.megabytesPerSecond() / theirs.megabytesPerSecond(), ours.megabytesPerSecond(),
                  theirs.megabytesPerSecond());
    print("RATIO", what, text);
}

void durationRatio(std::string_view what, std::string_view peer, const Samples& ours, const Samples& theirs) {
    char text[160];
    std::snprintf(text, sizeof text, "%.*s %.2f (ours %.1f ms, peer %.1f ms)", static_cast<int>(peer.size()),
                  peer.data(), theirs.median() / ours.median(), ours.median() * 1e3, theirs.median() * 1e3);
    print("RATIO", what, text);
}

void latency(std::string_view what, const Samples& samples) {
    constexpr double milliseconds = 1e3;
    print("LATENCY", what,
          "p50=" + threeDigits(samples.median() * milliseconds) +
              " p99=" + threeDigits(samples.percentile(99) * milliseconds) +
              " max=" + threeDigits(samples.largest() * milliseconds));
}

void memory(std::string_view what, double bytes, std::string_view unit) {
    char text[80];
    std::snprintf(text, sizeof text, "%.1f %.*s", bytes, static_cast<int>(unit.size()), unit.data());
    print("MEMORY", what, text);
}

void skipped(std::string_view what, std::string_view peer, std::string_view reason) {
    print("SKIPPED", what, std::string(peer) + ": " + std::string(reason));
}

} // namespace quelm::bench::report
