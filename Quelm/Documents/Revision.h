#pragma once

#include "TextCore/Check.h"

#include <cstdint>
#include <limits>

namespace quelm {

/// The revision that follows: one more. There is none after the largest number, and asking for it is a programming
/// error, for a number that wraps would tell views that nothing changed.
constexpr std::int64_t nextRevision(std::int64_t revision) {
    require(revision < std::numeric_limits<std::int64_t>::max(), "a revision can still be counted");
    return revision + 1;
}

} // namespace quelm
