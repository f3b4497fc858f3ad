#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/JSON/JSONBenchmarks.h"
#include "Benchmarks/Peers/Peers.h"
#include "JSONCore/JSONContent.h"
#include "JSONCore/JSONStyle.h"
#include "TextCore/UTF8.h"

namespace quelm::bench {

namespace {

/// The time of a check, absent when the text does not pass it.
template <typename Check>
std::optional<double> secondsIfPassed(Check&& check) {
    bool isPassed = false;
    const double seconds = secondsOf([&] { isPassed = check(); });
    return isPassed ? std::optional(seconds) : std::nullopt;
}

void compare(Subject& subject, std::string_view measurement, const std::vector<Contestant>& contestants,
             double seconds) {
    ContestRules rules = subject.contestRules();
    rules.seconds = seconds;
    const std::vector<ContestResult> results = hold(contestants, rules);
    const ContestResult& ours = results.front();
    const ContestResult& peer = results.back();
    if (ours.seconds.empty() || peer.seconds.empty())
        report::skipped(subject.label(measurement), peer.name, "the text did not pass");
    else
        report::ratio(subject.label(measurement), peer.name, {subject.bytes(), ours.seconds.median()},
                      {subject.bytes(), peer.seconds.median()});
}

void measureValidation(Subject& subject) {
    const std::string_view text = subject.text.view();
    const Contestant ours{"quelm", [=] { return secondsIfPassed([=] { return utf8::isValid(text); }); }};
    const Contestant peer{"simdjson",
                          [=] { return secondsIfPassed([=] { return peers::simdjsonValidatesUTF8(text); }); }};
    compare(subject, "validate-utf8", {ours, peer}, 0.5);
}

void measureDetection(Subject& subject) {
    constexpr int rounds = 200;
    Samples samples;
    for (int round = 0; round < rounds; ++round)
        samples.add(secondsOf([&] { keep(JSONStyle::detect(subject.text.view())); }));
    report::latency(subject.label("detect-style"), samples);
}

void measureOpening(Subject& subject) {
    const Contestant opening{"quelm", [&] {
                                 std::optional<JSONContent> content;
                                 return secondsIfPassed([&] {
                                     auto opened = JSONContent::fromData(subject.text);
                                     if (opened)
                                         content = std::move(*opened);
                                     return content && content->tree;
                                 });
                             }};
    const Contestant parsing{"parse-alone", [&] {
                                 const auto seconds =
                                     secondsIfPassed([&] { return subject.ours.parse(subject.text.view()); });
                                 subject.ours.discardDocument();
                                 return seconds;
                             }};
    compare(subject, "open", {opening, parsing}, 1);
}

} // namespace

void measureReading(Subject& subject) {
    measureValidation(subject);
    measureDetection(subject);
    measureOpening(subject);
}

} // namespace quelm::bench
