#include "Benchmarks/Corpora.h"
#include "Benchmarks/Groups.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/JSON/JSONBenchmarks.h"
#include "Benchmarks/Peers/Peers.h"
#include "TextCore/UTF8.h"

#include <cstdio>
#include <utility>

namespace quelm::bench {

namespace {

/// Beyond this the slow peers would take most of the time of a run.
constexpr std::size_t mostBytesForSlowPeers = 30'000'000;

std::vector<std::unique_ptr<JSONLibrary>> peersFor(std::size_t bytes, const Options& options) {
    auto libraries = peers::all();
    if (bytes > mostBytesForSlowPeers && !options.allPeers)
        std::erase_if(libraries, [](const auto& library) { return library->isSlow(); });
    return libraries;
}

void measure(Subject& subject) {
    if (!utf8::isValid(subject.text.view()))
        return report::skipped(subject.label("parse"), "quelm", "the document is not UTF-8");
    const bool isParsed = subject.ours.parse(subject.text.view());
    subject.ours.discardDocument();
    if (!isParsed)
        return report::skipped(subject.label("parse"), "quelm", "it refused the text");
    measureParsing(subject);
    measureWriting(subject);
    measureReading(subject);
    if (subject.freedMemory == FreedMemory::returned)
        measureStore(subject);
}

} // namespace

bool runJSONGroup(const Options& options) {
    bool isComplete = true;
    for (const Corpus& corpus : corpora(options)) {
        auto text = corpus.load();
        if (!text) {
            std::fprintf(stderr, "quelm-bench: %s\n", text.error().c_str());
            isComplete = false;
            continue;
        }
        const std::size_t bytes = text->size();
        Subject subject(corpus.name(), std::move(*text), peersFor(bytes, options),
                        options.warm ? FreedMemory::kept : FreedMemory::returned);
        measure(subject);
    }
    return isComplete;
}

} // namespace quelm::bench
