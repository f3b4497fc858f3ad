#pragma once

#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/Check.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace quelm {

/// Appends one value with all below it to a storage, in document order: a parser or a copier says what comes next. Ids
/// are given in that order. A container's list is written when it closes, all at once, so that lists cost no growth.
///
/// The top value is stored without a parent. Values that were added and not finished (a parse that failed) are left
/// behind detached and empty.
class TreeBuilder {
public:
    explicit TreeBuilder(TreeStorage& storage)
        : storage_(storage), firstID_(static_cast<std::uint32_t>(storage.nodes.size())), nextID_(firstID_) {}
    TreeBuilder(const TreeBuilder&) = delete;
    TreeBuilder& operator=(const TreeBuilder&) = delete;
    ~TreeBuilder() {
        if (!isFinished_)
            abandon();
    }

    TreeStorage& storage() { return storage_; }

    // These throw std::length_error when the storage cannot address another value, and std::bad_alloc.

    void addScalar(NodeKind kind, TextRef key, TextRef text) { add(NodeRecord::scalarNode(kind, key, text, parent_)); }

    /// Until the matching `close`, what is added are the children of this container.
    void open(NodeKind kind, TextRef key) {
        const std::uint32_t id = nextID_;
        NodeRecord* record = add(NodeRecord::emptyContainer(kind, key, parent_));
        if (openCount_ == open_.size()) [[unlikely]]
            open_.resize(openCount_ * 2 + 64);
        open_[openCount_++] = {record, id, static_cast<std::size_t>(pendingNext_ - pending_.data())};
        parent_ = id;
    }

    bool isAnyOpen() const { return openCount_ != 0; }
    NodeKind innermostKind() const { return open_[openCount_ - 1].record->kind; }

    void close() {
        const Open container = open_[--openCount_];
        std::uint32_t* first = pending_.data() + container.firstPending;
        if (pendingNext_ != first) {
            setChildren(*container.record, first, static_cast<std::size_t>(pendingNext_ - first));
            container.record->second = nextID_ - container.id;
            pendingNext_ = first;
        }
        parent_ = openCount_ != 0 ? open_[openCount_ - 1].id : NodeRecord::noParent;
    }

    /// The id of the top value. All containers must be closed; nothing may be added afterwards.
    NodeID finish() {
        require(openCount_ == 0 && pendingNext_ == pending_.data() + 1, "one whole value has been added");
        commit();
        isFinished_ = true;
        return NodeID{static_cast<std::int32_t>(firstID_)};
    }

private:
    struct Open {
        NodeRecord* record;
        std::uint32_t id;
        /// Where its children begin among the pending ids.
        std::size_t firstPending;
    };

    NodeRecord* add(const NodeRecord& record) {
        if (next_ == blockEnd_) [[unlikely]]
            nextBlock();
        *pendingNext_++ = nextID_++; // a new block came with room for as many
        *next_ = record;
        return next_++;
    }

    /// As `TreeStorage::setChildren`, into list words taken a block at a time.
    void setChildren(NodeRecord& container, const std::uint32_t* ids, std::size_t count) {
        if (count > TreeStorage::longestShortList) [[unlikely]] {
            storage_.setLargeList(container, ids, count);
            return;
        }
        // Ids are copied in strides of fixed size, up to one stride more than there are: that beats a call.
        constexpr std::size_t stride = 8;
        if (static_cast<std::size_t>(listEnd_ - listNext_) < 1 + count + stride) [[unlikely]]
            nextListBlock(1 + count + stride);
        container.first = listOffset_ + static_cast<std::uint32_t>(listNext_ - listBegin_);
        *listNext_ = TreeStorage::listHead(count, count);
        for (std::size_t i = 0; i < count; i += stride)
            std::memcpy(listNext_ + 1 + i, ids + i, stride * sizeof(std::uint32_t));
        listNext_ += 1 + count;
    }

    void nextBlock();
    void nextListBlock(std::size_t minimum);
    void commit();
    void commitLists();
    void abandon();

    TreeStorage& storage_;
    NodeRecord* blockBegin_ = nullptr;
    NodeRecord* next_ = nullptr;
    NodeRecord* blockEnd_ = nullptr;
    std::uint32_t* listBegin_ = nullptr;
    std::uint32_t* listNext_ = nullptr;
    std::uint32_t* listEnd_ = nullptr;
    /// What `listBegin_` is in `storage_.lists`.
    std::uint32_t listOffset_ = 0;
    std::uint32_t firstID_;
    std::uint32_t nextID_;
    std::uint32_t parent_ = NodeRecord::noParent;
    std::vector<Open> open_;
    std::size_t openCount_ = 0;
    /// Ids that wait for the container around them to close.
    std::vector<std::uint32_t> pending_;
    std::uint32_t* pendingNext_ = nullptr;
    bool isFinished_ = false;
};

} // namespace quelm
