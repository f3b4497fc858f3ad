#pragma once

#include "JSONCore/JSONStyle.h"

#include <vector>

namespace quelm::test {

/// Every style there is: compact, and each indent with and without sorted keys.
inline std::vector<JSONStyle> allStyles() {
    std::vector<JSONStyle> styles{JSONStyle::compact()};
    for (const JSONStyle::Indent indent : JSONStyle::allIndents) {
        styles.push_back(JSONStyle::pretty(indent, false));
        styles.push_back(JSONStyle::pretty(indent, true));
    }
    return styles;
}

} // namespace quelm::test
