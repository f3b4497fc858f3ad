#pragma once

#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/JSON/QuelmLibrary.h"
#include "Benchmarks/Peers/JSONLibrary.h"

#include <memory>
#include <string>
#include <vector>

namespace quelm::bench {

/// One document with all who read it.
struct Subject {
    /// As in "records-100MB".
    std::string name;
    SharedText text;
    QuelmLibrary ours;
    std::vector<std::unique_ptr<JSONLibrary>> peers;

    FreedMemory freedMemory;

    Subject(std::string documentName, SharedText paddedText, std::vector<std::unique_ptr<JSONLibrary>> others,
            FreedMemory between)
        : name(std::move(documentName)), text(std::move(paddedText)), ours(text), peers(std::move(others)),
          freedMemory(between) {}

    /// As in "json/parse/records-100MB"; "json-warm/…" when freed memory is kept.
    std::string label(std::string_view measurement) const {
        const std::string group = freedMemory == FreedMemory::kept ? "json-warm/" : "json/";
        return group + std::string(measurement) + "/" + name;
    }

    /// Large texts need fewer rounds for a median that stands still.
    ContestRules contestRules() const {
        const int fewestRounds = bytes() < 30e6 ? 9 : bytes() < 300e6 ? 7 : 3;
        return {.fewestRounds = fewestRounds, .freedMemory = freedMemory};
    }

    double bytes() const { return static_cast<double>(text.size()); }
};

} // namespace quelm::bench
