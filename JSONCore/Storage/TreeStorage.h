#pragma once

#include "JSONCore/ChildList.h"
#include "JSONCore/NodeID.h"
#include "JSONCore/Storage/BlockVector.h"
#include "JSONCore/Storage/NodeRecord.h"
#include "JSONCore/Storage/TextArena.h"
#include "TextCore/Check.h"
#include "TextCore/SharedText.h"

#include <cstdint>
#include <string_view>

namespace quelm {

class JSONTree;

/// What a `JSONTree` holds. Copies share everything and copy single blocks when they change.
///
/// Invariants:
/// 1. Record 0 is the holder: an array without key or parent.
/// 2. A record's texts lie within `source` or were appended to `arena`.
/// 3. A text within `source` needs no escape when it is written as JSON: it stands there as it is meant.
/// 4. A short list stands in `lists`, all in one block: one word, the number of children and 65536 times the number
/// that
///    there is room for, then their ids. Word 0 of `lists` is the empty list of containers that never had a child.
/// 5. A list of more than `longestShortList` children is one of `largeLists`, and so is any that grew beyond what is
/// worth
///    moving.
/// 6. A record has a parent if and only if its id is in the parent's list, where it stands once.
/// 7. The second word of a container's record is the number of nodes in its subtree.
struct TreeStorage {
    static constexpr std::size_t longestShortList = 1024;
    static constexpr std::size_t maximumNodeCount = 0x7FFF'FFFF;

    SharedText source;
    TextArena arena;
    BlockVector<NodeRecord, 11> nodes;
    BlockVector<std::uint32_t, 14> lists;
    BlockVector<LargeChildList, 5> largeLists;

    const NodeRecord& record(NodeID id) const { return nodes[static_cast<std::uint32_t>(id.raw)]; }
    NodeRecord& editRecord(NodeID id) { return nodes.edit(static_cast<std::uint32_t>(id.raw)); }

    std::string_view text(TextRef ref) const {
        return ref.isInArena ? arena.text(ref.offset, ref.length)
                             : std::string_view(source.data() + ref.offset, ref.length);
    }
    SharedText sharedText(TextRef ref) const;

    /// A reference to a text: to where it stands already if it can be used in place, else to a copy in the arena.
    TextRef store(std::string_view text);

    /// A reference to a copy in the arena. Throws std::length_error when it has no room left, as `store` does.
    TextRef append(std::string_view text);

    ChildList children(const NodeRecord& record) const {
        if (!isContainer(record.kind))
            return {};
        if (record.hasLargeList())
            return ChildList(largeLists[record.first]);
        const std::uint32_t* list = &lists[record.first];
        return {list + 1, *list & 0xFFFF};
    }

    /// Puts a child into the list of a container. Neither the child's record nor any size is touched. No effect when it
    /// throws std::bad_alloc.
    void insertChild(NodeID container, std::size_t index, NodeID child);

    /// Takes the child at `index` out likewise.
    void removeChild(NodeID container, std::size_t index);

    /// The first word of a short list.
    static constexpr std::uint32_t listHead(std::size_t count, std::size_t room) {
        return static_cast<std::uint32_t>(count | room << 16);
    }

    /// Stores many ids and makes them the list of a container that has none yet.
    void setLargeList(NodeRecord& container, const std::uint32_t* ids, std::size_t count);

    /// A storage of the empty holder and the words that every storage begins with.
    static TreeStorage withHolder();

private:
    void growShortList(NodeID container, std::size_t index, NodeID child);
};

const TreeStorage& storageOf(const JSONTree& tree);

} // namespace quelm
