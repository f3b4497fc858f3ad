#include "Quelm/TextEngine/LayoutCache.h"

#include <iterator>
#include <utility>
#include <vector>

namespace quelm {

std::shared_ptr<const LayoutPart> LayoutCache::find(Key key) {
    const auto found = parts_.find(key);
    if (found == parts_.end())
        return nullptr;
    uses_.splice(uses_.begin(), uses_, found->second.use);
    return found->second.part;
}

void LayoutCache::insert(Key key, std::shared_ptr<const LayoutPart> part) {
    const auto [place, isNew] = parts_.try_emplace(key);
    if (isNew) {
        uses_.push_front(&place->first);
        place->second.use = uses_.begin();
    }
    place->second.part = std::move(part);
    if (parts_.size() <= capacity)
        return;
    const auto oldest = parts_.find(*uses_.back());
    erase(oldest, std::next(oldest));
}

void LayoutCache::erase(Parts::iterator first, Parts::iterator end) {
    for (auto part = first; part != end; ++part)
        uses_.erase(part->second.use);
    parts_.erase(first, end);
}

void LayoutCache::dropLine(qint64 line) {
    erase(parts_.lower_bound({line, wholeLine}), parts_.lower_bound({line + 1, wholeLine}));
}

void LayoutCache::noteEditedLines(qint64 first, qint64 last, qint64 added, qint64 keptSegments) {
    const auto after = parts_.lower_bound({last + 1, wholeLine});
    if (const auto whole = parts_.find({first, wholeLine}); keptSegments > 0 && whole != parts_.end())
        erase(whole, std::next(whole));
    erase(keptSegments > 0 ? parts_.lower_bound({first, keptSegments}) : parts_.lower_bound({first, wholeLine}), after);
    if (added == 0)
        return;
    std::vector<Parts::node_type> moved;
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
