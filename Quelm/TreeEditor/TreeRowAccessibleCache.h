#pragma once

#include "JSONCore/NodeID.h"

#include <QAccessible>

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quelm {

class TreeRowAccessible;
class TreeViewAccessible;

/// The interfaces of those rows that assistive technology has asked for last: rows come in millions, and nobody says
/// when one is not needed any more. They are known to Qt by their numbers. That of the selected row stays.
///
/// 1. `recent_` has the nodes of `entries_`, the last one used in front, and each entry knows its place there.
/// 2. There are at most `mostRows`, all of the revision `revision_`.
class TreeRowAccessibleCache {
public:
    /// More than any screen shows, and few enough to be looked through at every edit.
    static constexpr std::size_t mostRows = 256;

    /// The view owns the cache.
    explicit TreeRowAccessibleCache(TreeViewAccessible& view) : view_(view) {}
    ~TreeRowAccessibleCache() { clear(); }
    TreeRowAccessibleCache(const TreeRowAccessibleCache&) = delete;
    TreeRowAccessibleCache& operator=(const TreeRowAccessibleCache&) = delete;

    /// The interface of a node of the tree. It exists while fewer than `mostRows` others are asked for.
    TreeRowAccessible& row(NodeID id);

    /// All there are.
    std::vector<TreeRowAccessible*> rows();

    void clear();

    /// For tests. A violation is a programming error.
    void checkInvariants() const;

private:
    struct Entry {
        QAccessible::Id number;
        std::list<NodeID>::iterator place;
    };

    void forgetFormerRevision();
    void makeRoom();
    void forget(NodeID id);

    TreeViewAccessible& view_;
    std::optional<std::int64_t> revision_;
    std::list<NodeID> recent_;
    std::unordered_map<NodeID, Entry> entries_;
};

} // namespace quelm
