#pragma once

#include "JSONCore/NodeKind.h"

#include <cstdint>

namespace quelm {

/// Where a text of a node stands: in the text that the tree was parsed from, character for character as it is meant, or
/// in the tree's arena.
struct TextRef {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    bool isInArena = false;
};

/// One stored value, 24 bytes.
struct NodeRecord {
    static constexpr std::uint32_t noParent = 0xFFFF'FFFF;

    enum Flag : std::uint8_t {
        keyInArena = 1,
        scalarInArena = 2,
        /// `first` is an index into the large lists, not into the short ones.
        largeList = 4,
    };

    std::uint32_t keyOffset;
    std::uint32_t keyLength;
    /// A scalar: the offset of its text. A container: its child list (see `TreeStorage`).
    std::uint32_t first;
    /// A scalar: the length of its text. A container: the number of nodes in its subtree.
    std::uint32_t second;
    std::uint32_t parent;
    NodeKind kind;
    std::uint8_t flags;
    /// Written, so that a record is stored in whole words.
    std::uint16_t unused;

    TextRef key() const { return {keyOffset, keyLength, (flags & keyInArena) != 0}; }
    void setKey(TextRef text) {
        keyOffset = text.offset;
        keyLength = text.length;
        setFlag(keyInArena, text.isInArena);
    }

    /// Of a scalar only.
    TextRef scalar() const { return {first, second, (flags & scalarInArena) != 0}; }
    void setScalar(TextRef text) {
        first = text.offset;
        second = text.length;
        setFlag(scalarInArena, text.isInArena);
    }

    std::uint32_t subtreeSize() const { return isContainer(kind) ? second : 1; }
    bool hasLargeList() const { return (flags & largeList) != 0; }

    static NodeRecord scalarNode(NodeKind kind, TextRef key, TextRef text, std::uint32_t parent) {
        const auto flags =
            static_cast<std::uint8_t>((key.isInArena ? keyInArena : 0) | (text.isInArena ? scalarInArena : 0));
        return {key.offset, key.length, text.offset, text.length, parent, kind, flags, 0};
    }
    static NodeRecord emptyContainer(NodeKind kind, TextRef key, std::uint32_t parent) {
        return {key.offset, key.length, 0, 1, parent, kind, static_cast<std::uint8_t>(key.isInArena ? keyInArena : 0),
                0};
    }

private:
    void setFlag(Flag flag, bool on) { flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag); }
};

static_assert(sizeof(NodeRecord) == 24);

} // namespace quelm
