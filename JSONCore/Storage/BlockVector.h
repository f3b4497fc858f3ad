#pragma once

#include "JSONCore/Storage/BlockMemory.h"

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace quelm {

/// A growing array in blocks of 2^Shift items. Copies share the blocks; the first change of a shared block copies that
/// block alone. Items never move to another index and the array never shrinks. Copying costs a pointer for every 256
/// blocks.
///
/// Invariants:
/// 1. Item i stands in block i >> Shift, which stands in chapter i >> (Shift + 8).
/// 2. Blocks exist for all items below `size_`, and no others; only the last one may be partly filled.
/// 3. A block or chapter that another array refers to is never written.
template <class T, unsigned Shift>
class BlockVector {
public:
    static constexpr std::size_t itemsPerBlock = std::size_t{1} << Shift;

    BlockVector() = default;
    BlockVector(const BlockVector&) = default;
    BlockVector(BlockVector&& other) noexcept { swap(other); }
    BlockVector& operator=(BlockVector other) noexcept {
        swap(other);
        return *this;
    }
    ~BlockVector() = default;

    std::size_t size() const { return size_; }

    const T& operator[](std::size_t index) const { return itemsOf(index >> Shift)[index & (itemsPerBlock - 1)]; }

    /// The item for writing; its block is this array's own afterwards.
    T& edit(std::size_t index) { return ownBlock(index >> Shift).items()[index & (itemsPerBlock - 1)]; }

    void append(const T& item) {
        const std::size_t block = size_ >> Shift;
        if (block == blockCount_)
            addBlock();
        BlockRef<T>& last = ownBlock(block);
        const std::size_t within = size_ & (itemsPerBlock - 1);
        new (last.items() + within) T(item);
        last.setLive(within + 1);
        ++size_;
    }

    /// Room for at least `minimum` (at most `itemsPerBlock`) new items side by side, as many as the block has; items
    /// left over in the block before it are skipped, their values undetermined. Write from its start, then `commit`.
    std::span<T> room(std::size_t minimum = 1)
        requires std::is_trivially_copyable_v<T>
    {
        const std::size_t filled = size_ & (itemsPerBlock - 1);
        if (filled != 0 && itemsPerBlock - filled < minimum)
            size_ += itemsPerBlock - filled;
        const std::size_t block = size_ >> Shift;
        if (block == blockCount_)
            addBlock();
        const std::size_t start = size_ & (itemsPerBlock - 1);
        return {ownBlock(block).items() + start, itemsPerBlock - start};
    }

    /// Makes the first `count` items of the last `room` part of the array.
    void commit(std::size_t count) { size_ += count; }

    /// Takes the blocks of the next `count` items from one large piece of memory. A hint: more items may be appended.
    void expect(std::size_t count) {
        if (const std::size_t blocks = count / itemsPerBlock)
            takeSlab(blocks);
    }

    /// Forgets the piece of memory that `expect` took once nothing more will be appended in bulk.
    void endExpected() { slab_.reset(); }

private:
    static constexpr std::size_t blocksPerChapter = 256;
    struct Chapter {
        std::array<BlockRef<T>, blocksPerChapter> blocks;
    };
    /// The reference to the slab is not shared by copies: it serves the one array that is being filled.
    struct SlabRef {
        BlockSlab* slab = nullptr;
        SlabRef() = default;
        SlabRef(const SlabRef&) {}
        SlabRef(SlabRef&& other) noexcept : slab(std::exchange(other.slab, nullptr)) {}
        SlabRef& operator=(SlabRef other) noexcept {
            std::swap(slab, other.slab);
            return *this;
        }
        ~SlabRef() { reset(); }
        void reset(BlockSlab* other = nullptr) {
            if (slab)
                slab->release();
            slab = other;
        }
    };

    void swap(BlockVector& other) noexcept {
        std::swap(chapters_, other.chapters_);
        std::swap(blockCount_, other.blockCount_);
        std::swap(size_, other.size_);
        std::swap(slabBlocks_, other.slabBlocks_);
        std::swap(slab_, other.slab_);
    }

    const T* itemsOf(std::size_t block) const {
        return chapters_[block / blocksPerChapter]->blocks[block % blocksPerChapter].items();
    }

    BlockRef<T>& ownBlock(std::size_t block) {
        std::shared_ptr<Chapter>& chapter = chapters_[block / blocksPerChapter];
        if (!isSoleOwner(chapter)) {
            chapter = std::make_shared<Chapter>(*chapter);
            countStorageBytesCopied(sizeof(Chapter));
        }
        BlockRef<T>& own = chapter->blocks[block % blocksPerChapter];
        if (own.isShared()) {
            const std::size_t first = block * itemsPerBlock;
            own = own.clone(std::min(itemsPerBlock, size_ - first), itemsPerBlock);
        }
        return own;
    }

    void addBlock() {
        if (slab_.slab && slabBlocks_ == 0) // more than was expected: another piece, as large as all so far
            takeSlab(blockCount_);
        if (blockCount_ % blocksPerChapter == 0)
            chapters_.push_back(std::make_shared<Chapter>());
        std::shared_ptr<Chapter>& chapter = chapters_.back();
        if (!isSoleOwner(chapter)) {
            chapter = std::make_shared<Chapter>(*chapter);
            countStorageBytesCopied(sizeof(Chapter));
        }
        chapter->blocks[blockCount_ % blocksPerChapter] = BlockRef<T>::make(itemsPerBlock, slab_.slab);
        ++blockCount_;
        if (slab_.slab)
            --slabBlocks_;
    }

    void takeSlab(std::size_t blocks) {
        slab_.reset(BlockSlab::make(sizeof(BlockHead) + BlockRef<T>::bytesFor(itemsPerBlock), blocks));
        slabBlocks_ = blocks;
    }

    std::vector<std::shared_ptr<Chapter>> chapters_;
    std::size_t blockCount_ = 0;
    std::size_t size_ = 0;
    /// Blocks that can still be cut from the slab.
    std::size_t slabBlocks_ = 0;
    SlabRef slab_;
};

} // namespace quelm
