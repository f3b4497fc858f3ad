#pragma once

#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/Check.h"

#include <cstdint>
#include <vector>

namespace quelm {

/// Appends one value with all below it to a storage, in document order: a parser or a copier says what comes next. Ids are
/// given in that order. A container's list is written when it closes, all at once, so that lists cost no growth.
///
/// The top value is stored without a parent. Values that were added and not finished (a parse that failed) are left behind
/// detached and empty.
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

    void addScalar(NodeKind kind, TextRef key, TextRef text) {
        add(NodeRecord::scalarNode(kind, key, text, parent_));
    }

    /// Until the matching `close`, what is added are the children of this container.
    void open(NodeKind kind, TextRef key) {
        const std::uint32_t id = nextID_;
        NodeRecord* record = add(NodeRecord::emptyContainer(kind, key, parent_));
        if (openCount_ == open_.size()) [[unlikely]]
            open_.resize(openCount_ * 2 + 64);
        open_[openCount_++] = {record, id, pendingCount_};
        parent_ = id;
    }

    bool isAnyOpen() const { return openCount_ != 0; }
    NodeKind innermostKind() const { return open_[openCount_ - 1].record->kind; }

    void close() {
        const Open container = open_[--openCount_];
        if (const std::size_t count = pendingCount_ - container.firstPending) {
            setChildren(*container.record, pending_.data() + container.firstPending, count);
            container.record->second = nextID_ - container.id;
            pendingCount_ = container.firstPending;
        }
        parent_ = openCount_ != 0 ? open_[openCount_ - 1].id : NodeRecord::noParent;
    }

    /// The id of the top value. All containers must be closed; nothing may be added afterwards.
    NodeID finish() {
        require(openCount_ == 0 && pendingCount_ == 1, "one whole value has been added");
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
        if (pendingCount_ == pending_.size()) [[unlikely]]
            pending_.resize(pendingCount_ * 2 + 256);
        pending_[pendingCount_++] = nextID_++;
        *next_ = record;
        return next_++;
    }

    /// As `TreeStorage::setChildren`, into list words taken a block at a time.
    void setChildren(NodeRecord& container, const std::uint32_t* ids, std::size_t count) {
        if (count > TreeStorage::longestShortList) [[unlikely]] {
            storage_.setLargeList(container, ids, count);
            return;
        }
        if (static_cast<std::size_t>(listEnd_ - listNext_) < count + 1) [[unlikely]]
            nextListBlock(count + 1);
        container.first = listOffset_ + static_cast<std::uint32_t>(listNext_ - listBegin_);
        *listNext_++ = TreeStorage::listHead(count, count);
        for (std::size_t i = 0; i < count; ++i)
            *listNext_++ = ids[i];
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
    std::vector<std::uint32_t> pending_;
    std::size_t pendingCount_ = 0;
    bool isFinished_ = false;
};

} // namespace quelm
