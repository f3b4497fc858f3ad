#include "Quelm/TextEngine/LayoutCache.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace quelm {

std::shared_ptr<const LayoutPart> LayoutCache::find(Key key) {
    const auto found = parts_.find(key);
    if (found == parts_.end())
        return nullptr;
    found->second.lastUse = ++now_;
    return found->second.part;
}

void LayoutCache::insert(Key key, std::shared_ptr<const LayoutPart> part) {
    if (parts_.size() >= capacity && !parts_.contains(key))
        parts_.erase(std::ranges::min_element(parts_, {}, [](const auto& entry) { return entry.second.lastUse; }));
    parts_.insert_or_assign(key, Entry{std::move(part), ++now_});
}

void LayoutCache::dropLine(qint64 line) {
    parts_.erase(parts_.lower_bound({line, wholeLine}), parts_.lower_bound({line + 1, wholeLine}));
}

void LayoutCache::noteEditedLines(qint64 first, qint64 last, qint64 added, qint64 keptSegments) {
    const auto after = parts_.lower_bound({last + 1, wholeLine});
    if (keptSegments > 0)
        parts_.erase({first, wholeLine});
    parts_.erase(keptSegments > 0 ? parts_.lower_bound({first, keptSegments}) : parts_.lower_bound({first, wholeLine}),
                 after);
    if (added == 0)
        return;
    std::vector<decltype(parts_)::node_type> moved;
    for (auto next = after; next != parts_.end();)
        moved.push_back(parts_.extract(next++));
    for (auto& node : moved) {
        node.key().line += added;
        parts_.insert(std::move(node));
    }
}

void LayoutCache::forgetColors(qint64 firstLine, qint64 lastLine) const {
    const auto end = parts_.lower_bound({lastLine + 1, wholeLine});
    for (auto next = parts_.lower_bound({firstLine, wholeLine}); next != end; ++next)
        next->second.part->forgetColors();
}

} // namespace quelm
