#pragma once

#include "JSONCore/TreeRow.h"

#include <string>

namespace quelm {

/// Rows as an outline makes them, of depth 0.

inline TreeRow scalarRow(TreeRow::Label label, NodeKind kind, std::string value) {
    TreeRow row;
    row.label = std::move(label);
    row.kind = kind;
    row.value = std::move(value);
    return row;
}

inline TreeRow containerRow(TreeRow::Label label, NodeKind kind, std::int64_t childCount = 0) {
    TreeRow row;
    row.label = std::move(label);
    row.kind = kind;
    row.childCount = childCount;
    return row;
}

} // namespace quelm
