#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace quelm {

/// The address of a value in one `JSONTree`: its index in the order in which nodes were stored. Dense, never reused.
struct NodeID {
    std::int32_t raw = 0;

    friend constexpr auto operator<=>(NodeID, NodeID) = default;
};

} // namespace quelm

template <>
struct std::hash<quelm::NodeID> {
    std::size_t operator()(quelm::NodeID id) const noexcept { return std::hash<std::int32_t>{}(id.raw); }
};
