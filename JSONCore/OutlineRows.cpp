#include "JSONCore/OutlineRows.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <utility>

namespace quelm {

const OutlineRow& OutlineRows::operator[](std::int64_t index) const {
    require(index >= 0 && index < size(), "the index of a row is below the number of rows");
    return rows_[static_cast<std::size_t>(index)];
}

std::optional<std::int64_t> OutlineRows::indexOf(NodeID id) const {
    const auto at = static_cast<std::uint32_t>(id.raw);
    if (at >= blockOf_.size() || blockOf_[at] == 0)
        return std::nullopt;
    const std::size_t ordinal = rows_.ordinalOf(blockOf_[at] - 1);
    const auto rows = rows_.block(ordinal);
    const auto row = std::ranges::find(rows, id, &OutlineRow::id);
    require(row != rows.end(), "the row of a node is in the block that is noted for it");
    return static_cast<std::int64_t>(rows_.blockStart(ordinal)) + (row - rows.begin());
}

std::int64_t OutlineRows::stretchEnd(std::int64_t index) const {
    const std::uint32_t depth = (*this)[index].depth;
    std::size_t ordinal = rows_.blockAt(static_cast<std::size_t>(index));
    auto within = static_cast<std::size_t>(index) - rows_.blockStart(ordinal) + 1;
    for (; ordinal < rows_.blockCount(); ++ordinal, within = 0) {
        if (within == 0 && rows_.summary(ordinal).depth > depth)
            continue;
        const auto rows = rows_.block(ordinal);
        for (; within < rows.size(); ++within) {
            if (rows[within].depth <= depth)
                return static_cast<std::int64_t>(rows_.blockStart(ordinal) + within);
        }
    }
    return size();
}

void OutlineRows::replace(std::int64_t index, std::int64_t count, Sequence rows) {
    require(index >= 0 && count >= 0 && count <= size() - index, "the replaced rows are there");
    rows_.replace(static_cast<std::size_t>(index), static_cast<std::size_t>(count), std::move(rows), Tracker{blockOf_});
}

void OutlineRows::Tracker::placed(std::uint32_t number, std::span<const OutlineRow> rows) const {
    for (const OutlineRow& row : rows) {
        const auto at = static_cast<std::uint32_t>(row.id.raw);
        while (blockOf.size() <= at)
            blockOf.append(0);
        blockOf.edit(at) = number + 1;
    }
}

void OutlineRows::Tracker::dropped(std::span<const OutlineRow> rows) const {
    for (const OutlineRow& row : rows)
        blockOf.edit(static_cast<std::uint32_t>(row.id.raw)) = 0;
}

void OutlineRows::checkInvariants() const {
    std::size_t rowCount = 0;
    for (std::size_t ordinal = 0; ordinal < rows_.blockCount(); ++ordinal) {
        require(!rows_.block(ordinal).empty(), "no block of rows is empty");
        require(rows_.blockStart(ordinal) == rowCount, "a block of rows starts where the one before ends");
        for (const OutlineRow& row : rows_.block(ordinal)) {
            const auto at = static_cast<std::uint32_t>(row.id.raw);
            require(at < blockOf_.size() && blockOf_[at] != 0 && rows_.ordinalOf(blockOf_[at] - 1) == ordinal,
                    "the block of a row is noted for its node");
            require(rows_.summary(ordinal).depth <= row.depth, "no row is less deep than its block says");
            ++rowCount;
        }
    }
    std::size_t noted = 0;
    for (std::size_t at = 0; at < blockOf_.size(); ++at)
        noted += blockOf_[at] != 0;
    require(rowCount == rows_.size() && noted == rowCount, "every row is noted once");
}

} // namespace quelm
