#pragma once

#include "Quelm/TextEngine/AttributeRuns.h"

#include <string>

namespace quelm::test {

inline constexpr TextAttributes base{};
inline constexpr TextAttributes green{ColorRole::green};
inline constexpr TextAttributes blue{ColorRole::blue};

/// "3 text, 2 green!, ..." with an exclamation mark for settled runs.
inline std::string described(const AttributeRuns& runs) {
    std::string description;
    runs.forEach({0, runs.length()}, [&](const AttributeRuns::PlacedRun& placed) {
        const ColorRole role = placed.run.attributes.foreground;
        description += description.empty() ? "" : ", ";
        description += std::to_string(placed.run.length);
        description += role == ColorRole::green ? " green" : role == ColorRole::blue ? " blue" : " base";
        description += placed.run.isSettled ? "!" : "";
    });
    return description;
}

/// Settled runs of one to three units, green and blue in turns, by their place alone.
class Stripes : public DerivedRuns {
public:
    /// Places where chunks may begin and end.
    static constexpr qint64 period = 6;

    mutable int derivedCount = 0;

private:
    void derive(TextRange chunk, AttributeRunsBuilder& runs) const override {
        ++derivedCount;
        for (qint64 place = chunk.location; place < chunk.end(); place += period) {
            runs.append({1, green, true});
            runs.append({2, blue, true});
            runs.append({3, base, true});
        }
    }
};

} // namespace quelm::test
