#include "JSONCore/JSONTree.h"
#include "JSONCore/KeyIndex.h"
#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/Check.h"

#include <vector>

namespace quelm {

void JSONTree::checkInvariants() const {
    const TreeStorage& storage = this->storage();
    const NodeRecord& top = storage.record(holder);
    require(top.kind == NodeKind::array && key(holder).empty() && top.parent == NodeRecord::noParent,
            "the holder is an array without key or parent");
    require(children(holder).size() <= 1, "the holder has no more than one child");

    const auto count = static_cast<std::int32_t>(storage.nodes.size());
    std::vector<std::uint8_t> timesListed(storage.nodes.size());
    for (NodeID id{0}; id.raw < count; ++id.raw) {
        std::int64_t size = 1;
        for (NodeID child : children(id)) {
            require(storage.record(child).parent == static_cast<std::uint32_t>(id.raw),
                    "a listed child knows its parent");
            require(timesListed[static_cast<std::size_t>(child.raw)]++ == 0, "a node is listed once");
            size += subtreeSize(child);
        }
        require(subtreeSize(id) == size, "the size of a subtree is that of its children and its top");
    }
    for (NodeID id{0}; id.raw < count; ++id.raw) {
        const bool isListed = timesListed[static_cast<std::size_t>(id.raw)] == 1;
        require(parent(id).has_value() == isListed, "a node with a parent is listed by it");
        const KeyIndex* keys = kind(id) == NodeKind::object ? keyIndexes_.find(id) : nullptr;
        if (!keys)
            continue;
        KeyIndex fresh(static_cast<std::size_t>(children(id).size()));
        for (NodeID member : children(id))
            fresh.add(key(member));
        require(keys->hasSameCounts(fresh), "the index of an object counts its keys");
    }
}

} // namespace quelm
