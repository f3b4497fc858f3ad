#pragma once

#include "Quelm/TreeEditor/TreeRowContents.h"

#include <cstdint>
#include <unordered_map>

namespace quelm {

class TreeEditor;

/// The contents of the rows in and around the viewport, made when first asked for, from previews of the rows: a key or
/// a value of megabytes costs no more than a long one.
class TreeRowCache {
public:
    /// The row at a position of the editor's outline, which must have it. Valid until the next `clear` or `keepOnly`.
    const TreeRowContents& contents(std::int64_t row, const TreeEditor& editor, const TreeRowStyle& style);

    /// For another outline or style.
    void clear() { contents_.clear(); }

    /// Forgets rows outside a stretch when there are many of them.
    void keepOnly(std::int64_t firstRow, std::int64_t endRow);

private:
    std::unordered_map<std::int64_t, TreeRowContents> contents_;
};

} // namespace quelm
