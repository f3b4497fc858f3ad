#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/JSON/JSONBenchmarks.h"

#include <map>

namespace quelm::bench {

namespace {

constexpr int roundsOfSlowOnes = 3;

/// Parses and frees once; the freeing goes to samples of its own.
std::optional<double> parseOnce(JSONLibrary& library, std::string_view text, Samples& freeing) {
    bool isParsed = false;
    const double seconds = secondsOf([&] { isParsed = library.parse(text); });
    keep(library);
    const double secondsToFree = secondsOf([&] { library.discardDocument(); });
    if (!isParsed)
        return std::nullopt;
    freeing.add(secondsToFree);
    return seconds;
}

void printParsing(const Subject& subject, const ContestResult& ours, const ContestResult& peer) {
    if (peer.seconds.empty())
        report::skipped(subject.label("parse"), peer.name, "it refused the text");
    else
        report::ratio(subject.label("parse"), peer.name, {subject.bytes(), ours.seconds.median()},
                      {subject.bytes(), peer.seconds.median()});
}

} // namespace

void measureParsing(Subject& subject) {
    std::map<std::string, Samples> freeing;
    std::vector<Contestant> contestants;
    const auto enter = [&](JSONLibrary& library) {
        Samples& samples = freeing[std::string(library.name())];
        contestants.push_back({std::string(library.name()),
                               [&] { return parseOnce(library, subject.text.view(), samples); },
                               library.isSlow() ? roundsOfSlowOnes : 1000});
    };
    enter(subject.ours);
    for (const auto& peer : subject.peers)
        enter(*peer);

    const std::vector<ContestResult> results = hold(contestants, subject.contestRules());
    for (auto peer = results.begin() + 1; peer != results.end(); ++peer)
        printParsing(subject, results.front(), *peer);
    for (const ContestResult& result : results)
        if (!result.seconds.empty())
            report::latency(subject.label("free-" + result.name), freeing[result.name]);
}

} // namespace quelm::bench
