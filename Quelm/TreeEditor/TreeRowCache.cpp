#include "Quelm/TreeEditor/TreeRowCache.h"

#include "Quelm/TreeEditor/TreeEditor.h"
#include "TextCore/Check.h"

namespace quelm {

namespace {

/// Rows that are kept without a thought, for a short way back.
constexpr std::size_t spareRows = 256;

} // namespace

const TreeRowContents& TreeRowCache::contents(std::int64_t row, const TreeEditor& editor, const TreeRowStyle& style) {
    const auto found = contents_.find(row);
    if (found != contents_.end())
        return found->second;
    const JSONTree* tree = editor.tree();
    require(tree != nullptr, "rows are asked for while there is a tree");
    return contents_.try_emplace(row, editor.outline().previewRow(row, *tree), style).first->second;
}

void TreeRowCache::keepOnly(std::int64_t firstRow, std::int64_t endRow) {
    if (contents_.size() > spareRows + static_cast<std::size_t>(endRow - firstRow))
        std::erase_if(contents_, [=](const auto& entry) { return entry.first < firstRow || entry.first >= endRow; });
}

} // namespace quelm
