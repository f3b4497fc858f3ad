#pragma once

#include "Benchmarks/Harness/Samples.h"

#include <string_view>

/// The lines of results on standard output, one a result, flushed at once. `what` names the measurement from
/// the group on, as in "json/parse/records-100MB".
namespace quelm::bench::report {

/// Bytes worked off and the median seconds that it took.
struct Speed {
    double bytes = 0;
    double seconds = 0;

    double megabytesPerSecond() const { return bytes / seconds / 1e6; }
};

/// `RATIO json/parse/records-100MB simdjson-dom 1.52 (ours 1260 MB/s, peer 830 MB/s)`: above 1 is faster than
/// the peer.
void ratio(std::string_view what, std::string_view peer, Speed ours, Speed theirs);

/// `RATIO window/start-new/xvfb empty-window 0.80 (ours 35.0 ms, peer 28.0 ms)`, of the medians: above 1 is faster than
/// the peer.
void durationRatio(std::string_view what, std::string_view peer, const Samples& ours, const Samples& theirs);

/// `LATENCY outline/insert/array-front p50=0.9 p99=2.1 max=3.0`, in milliseconds.
void latency(std::string_view what, const Samples& samples);

/// `MEMORY json/store/records-100MB 43.1 B/node`.
void memory(std::string_view what, double bytes, std::string_view unit);

/// `SKIPPED json/parse/deep-4MB boost-json: it could not parse the text`: no figure, and why.
void skipped(std::string_view what, std::string_view peer, std::string_view reason);

} // namespace quelm::bench::report
