#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace quelm {

/// What a JSON value is.
enum class NodeKind : std::uint8_t { object = 0, array = 1, string = 2, number = 3, bool_ = 4, null = 5 };

/// Every kind, in the order of the raw values.
inline constexpr std::array allNodeKinds{NodeKind::object, NodeKind::array, NodeKind::string,
                                         NodeKind::number, NodeKind::bool_, NodeKind::null};

/// The kind of a raw value; absent above 5.
constexpr std::optional<NodeKind> nodeKindFromRawValue(std::uint8_t rawValue) {
    if (rawValue >= allNodeKinds.size())
        return std::nullopt;
    return static_cast<NodeKind>(rawValue);
}

/// Whether values of the kind have children: objects and arrays.
constexpr bool isContainer(NodeKind kind) {
    return kind == NodeKind::object || kind == NodeKind::array;
}

} // namespace quelm
