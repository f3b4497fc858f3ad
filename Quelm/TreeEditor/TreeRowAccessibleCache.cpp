#include "Quelm/TreeEditor/TreeRowAccessibleCache.h"

#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeRowAccessible.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"
#include "TextCore/Check.h"

#include <iterator>

namespace quelm {

TreeRowAccessible& TreeRowAccessibleCache::row(NodeID id) {
    forgetFormerRevision();
    if (const auto found = entries_.find(id); found != entries_.end()) {
        if (QAccessibleInterface* known = QAccessible::accessibleInterface(found->second.number)) {
            recent_.splice(recent_.begin(), recent_, found->second.place);
            return static_cast<TreeRowAccessible&>(*known);
        }
        // Qt deletes all interfaces when the program ends.
        forget(id);
    }
    makeRoom();
    auto* made = new TreeRowAccessible(view_, id);
    const QAccessible::Id number = QAccessible::registerAccessibleInterface(made);
    recent_.push_front(id);
    entries_.emplace(id, Entry{number, recent_.begin()});
    return *made;
}

std::vector<TreeRowAccessible*> TreeRowAccessibleCache::rows() {
    forgetFormerRevision();
    std::vector<TreeRowAccessible*> rows;
    for (const auto& [id, entry] : entries_) {
        if (QAccessibleInterface* known = QAccessible::accessibleInterface(entry.number))
            rows.push_back(static_cast<TreeRowAccessible*>(known));
    }
    return rows;
}

void TreeRowAccessibleCache::clear() {
    while (!recent_.empty())
        forget(recent_.back());
}

void TreeRowAccessibleCache::checkInvariants() const {
    require(recent_.size() == entries_.size(), "1: every node has one place");
    for (auto place = recent_.begin(); place != recent_.end(); ++place) {
        const auto found = entries_.find(*place);
        require(found != entries_.end() && found->second.place == place, "1: an entry knows its place");
        const auto* row = static_cast<TreeRowAccessible*>(QAccessible::accessibleInterface(found->second.number));
        require(row && row->node() == *place, "1: the number of an entry is that of its node's row");
    }
    require(entries_.size() <= mostRows, "2: the rows are few");
}

void TreeRowAccessibleCache::forgetFormerRevision() {
    const std::optional<std::int64_t> revision = view_.editor().outlineRevision();
    if (revision == revision_)
        return;
    clear();
    revision_ = revision;
}

void TreeRowAccessibleCache::makeRoom() {
    if (entries_.size() < mostRows)
        return;
    if (recent_.back() == view_.editor().selection())
        recent_.splice(recent_.begin(), recent_, std::prev(recent_.end()));
    forget(recent_.back());
}

void TreeRowAccessibleCache::forget(NodeID id) {
    const auto found = entries_.find(id);
    const Entry entry = found->second;
    // Nothing is left of it here when Qt tells of its end.
    entries_.erase(found);
    recent_.erase(entry.place);
    QAccessible::deleteAccessibleInterface(entry.number);
}

} // namespace quelm
