#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/Storage/BlockSequence.h"
#include "JSONCore/Storage/BlockVector.h"

#include <cstdint>
#include <limits>
#include <optional>

namespace quelm {

/// What is stored of a row.
struct OutlineRow {
    NodeID id;
    std::uint32_t depth;
};

/// No row of the block is less deep.
struct LeastDepth {
    std::uint32_t depth = std::numeric_limits<std::uint32_t>::max();
    void include(const OutlineRow& row) { depth = std::min(depth, row.depth); }
};

/// The rows of an outline in display order: 8 bytes each, and 4 bytes a node that say in which block of rows it stands.
///
/// Invariants:
/// 1. No node has two rows.
/// 2. `blockOf_[id]` is 1 + the number of the block that holds the row of `id`; 0, or no entry, when it has none.
class OutlineRows {
public:
    using Sequence = BlockSequence<OutlineRow, LeastDepth>;

    std::int64_t size() const { return static_cast<std::int64_t>(rows_.size()); }

    /// `index` from 0 to below `size()`, otherwise a programming error.
    const OutlineRow& operator[](std::int64_t index) const;

    /// The position of the node's row. O(1) to its block, then the rows of that block.
    std::optional<std::int64_t> indexOf(NodeID id) const;

    /// The end of the stretch that starts at `index`: the first later row that is not deeper, or the end of all.
    std::int64_t stretchEnd(std::int64_t index) const;

    /// Puts `rows` in the place of `count` rows.
    void replace(std::int64_t index, std::int64_t count, Sequence rows);

    /// Checks the invariants: for tests.
    void checkInvariants() const;

private:
    using BlockOfNode = BlockVector<std::uint32_t, 14>;

    /// Keeps `blockOf_` up to date while rows come, move and go.
    struct Tracker {
        BlockOfNode& blockOf;
        void placed(std::uint32_t number, std::span<const OutlineRow> rows) const;
        void dropped(std::span<const OutlineRow> rows) const;
    };

    Sequence rows_;
    BlockOfNode blockOf_;
};

} // namespace quelm
