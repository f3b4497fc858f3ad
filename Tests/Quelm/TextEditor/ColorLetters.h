#pragma once

#include "Quelm/TextEngine/TextStorage.h"

#include <string>

namespace quelm::test {

/// A letter for every unit: k for keys, s for strings, n for numbers, b for true and false, z for null, p for
/// punctuation, r for red, and a full stop for the base colour.
inline char letter(ColorRole role) {
    switch (role) {
    case ColorRole::purple:
        return 'k';
    case ColorRole::green:
        return 's';
    case ColorRole::blue:
        return 'n';
    case ColorRole::orange:
        return 'b';
    case ColorRole::gray:
        return 'z';
    case ColorRole::secondaryText:
        return 'p';
    case ColorRole::red:
        return 'r';
    default:
        return '.';
    }
}

inline std::string colors(const TextStorage& storage) {
    std::string letters;
    storage.attributes().forEach({0, storage.length()}, [&](const AttributeRuns::PlacedRun& placed) {
        letters.append(static_cast<std::size_t>(placed.run.length), letter(placed.run.attributes.foreground));
    });
    return letters;
}

} // namespace quelm::test
