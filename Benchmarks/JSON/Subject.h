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

    Subject(std::string documentName, SharedText paddedText, std::vector<std::unique_ptr<JSONLibrary>> others)
        : name(std::move(documentName)), text(std::move(paddedText)), ours(text), peers(std::move(others)) {}

    /// As in "json/parse/records-100MB".
    std::string label(std::string_view measurement) const {
        return "json/" + std::string(measurement) + "/" + name;
    }

    /// Large texts need fewer rounds for a median that stands still.
    ContestLength contestLength() const {
        constexpr double largeText = 30e6;
        return {.fewestRounds = bytes() < largeText ? 9 : 5};
    }

    double bytes() const { return static_cast<double>(text.size()); }
};

} // namespace quelm::bench
