#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/Storage/BlockVector.h"

#include <cstdint>

namespace quelm {

/// A set of node ids: one bit an id up to the largest one ever put in. Copies share blocks. Membership O(1).
class NodeSet {
public:
    bool contains(NodeID id) const {
        const auto word = static_cast<std::uint32_t>(id.raw) / 64; // a negative id is beyond every word
        return word < words_.size() && (words_[word] >> (id.raw % 64) & 1);
    }

    /// Whether the set changed.
    bool insert(NodeID id);
    bool remove(NodeID id);

    std::int64_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

private:
    BlockVector<std::uint64_t, 10> words_;
    std::int64_t size_ = 0;
};

} // namespace quelm
