#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/Storage/BlockSequence.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace quelm {

/// The ids of a large container's children.
using LargeChildList = BlockSequence<std::uint32_t, IDRange>;

/// The children of a container in document order, read in place. A view: valid until the next mutation of the tree it
/// came from (and not beyond the life of that tree). Size and iteration step are O(1), indexing O(log n) at most.
class ChildList {
public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = NodeID;
        using difference_type = std::ptrdiff_t;
        using pointer = const NodeID*;
        using reference = NodeID;

        Iterator() = default;

        NodeID operator*() const { return NodeID{static_cast<std::int32_t>(*at_)}; }
        Iterator& operator++() {
            if (++at_ == pieceEnd_ && list_)
                enterNextBlock();
            return *this;
        }
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const Iterator& left, const Iterator& right) { return left.at_ == right.at_; }

    private:
        friend class ChildList;
        void enterNextBlock() {
            ++block_;
            const bool atEnd = block_ == list_->blockCount();
            const auto items = atEnd ? decltype(list_->block(0)){} : list_->block(block_);
            at_ = items.data();
            pieceEnd_ = items.data() + items.size();
        }

        const std::uint32_t* at_ = nullptr;
        const std::uint32_t* pieceEnd_ = nullptr;
        const LargeChildList* list_ = nullptr;
        std::size_t block_ = 0;
    };
    using const_iterator = Iterator;
    using value_type = NodeID;

    ChildList() = default;
    ChildList(const std::uint32_t* ids, std::size_t count) : ids_(ids), size_(count) {}
    explicit ChildList(const LargeChildList& list) : list_(&list), size_(list.size()) {}

    std::int64_t size() const { return static_cast<std::int64_t>(size_); }
    bool empty() const { return size_ == 0; }

    /// `index` from 0 to below `size()`, otherwise a programming error.
    NodeID operator[](std::int64_t index) const;
    NodeID front() const { return (*this)[0]; }
    NodeID back() const { return (*this)[size() - 1]; }

    Iterator begin() const {
        Iterator first;
        if (list_) {
            first.list_ = list_;
            first.block_ = static_cast<std::size_t>(-1);
            first.enterNextBlock();
        } else {
            first.at_ = ids_;
            first.pieceEnd_ = ids_ + size_;
        }
        return first;
    }
    Iterator end() const {
        Iterator last;
        last.at_ = list_ ? nullptr : ids_ + size_;
        return last;
    }

    /// The position of `id` in the list, or -1. O(size) at four bytes a child at worst; a large list skips the blocks
    /// whose range of ids leaves it out.
    std::int64_t indexOf(NodeID id) const;

private:
    const std::uint32_t* ids_ = nullptr;
    const LargeChildList* list_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace quelm
