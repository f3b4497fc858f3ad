#include "JSONCore/Storage/TreeBuilder.h"

#include <stdexcept>

namespace quelm {

void TreeBuilder::nextBlock() {
    commit();
    constexpr std::size_t mostListWords = 0xF000'0000; // as many as 32 bits address, less what blocks leave unused
    if (nextID_ >= TreeStorage::maximumNodeCount - storage_.nodes.itemsPerBlock ||
        storage_.lists.size() > mostListWords)
        throw std::length_error("a tree stores fewer than 2^31 nodes");
    const auto pendingCount = static_cast<std::size_t>(pendingNext_ - pending_.data());
    constexpr std::size_t room = 2 * decltype(TreeStorage::nodes)::itemsPerBlock; // a stride is read beyond the last id
    if (pending_.size() - pendingCount < room)
        pending_.resize(pendingCount * 2 + room);
    pendingNext_ = pending_.data() + pendingCount;
    const std::span<NodeRecord> block = storage_.nodes.room();
    blockBegin_ = next_ = block.data();
    blockEnd_ = blockBegin_ + block.size();
}

void TreeBuilder::commit() {
    storage_.nodes.commit(static_cast<std::size_t>(next_ - blockBegin_));
    blockBegin_ = next_;
    commitLists();
}

void TreeBuilder::nextListBlock(std::size_t minimum) {
    commitLists();
    const std::span<std::uint32_t> room = storage_.lists.room(minimum);
    listBegin_ = listNext_ = room.data();
    listEnd_ = listBegin_ + room.size();
    listOffset_ = static_cast<std::uint32_t>(storage_.lists.size());
}

void TreeBuilder::commitLists() {
    const auto written = static_cast<std::size_t>(listNext_ - listBegin_);
    storage_.lists.commit(written);
    listOffset_ += static_cast<std::uint32_t>(written);
    listBegin_ = listNext_;
}

void TreeBuilder::abandon() {
    commit();
    for (std::size_t id = firstID_; id < storage_.nodes.size(); ++id)
        storage_.nodes.edit(id) = NodeRecord::scalarNode(NodeKind::null, {}, {}, NodeRecord::noParent);
}

} // namespace quelm
