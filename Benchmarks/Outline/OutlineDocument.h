#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/NodeID.h"

#include <cstdint>

namespace quelm::bench {

/// A document of about five million values for the outline: an object with a list of records, an array of a
/// million scalars, an object of a million scalar members and another list of records, in that order. Scalars
/// come in fives: a Boolean first, then a number, a string, another number and null, so that children 0, 5,
/// 10… are Booleans.
struct OutlineDocument {
    static constexpr std::int64_t nodes = 5'000'000;
    static constexpr std::int64_t largeContainerSize = 1'000'000;
    static constexpr std::int64_t booleanEvery = 5;

    JSONTree tree;
    NodeID largeArray;
    NodeID largeObject;
};

/// Generates and parses it: the same every time.
OutlineDocument makeOutlineDocument();

} // namespace quelm::bench
