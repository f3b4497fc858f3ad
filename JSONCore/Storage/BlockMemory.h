#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace quelm {

/// Bytes that copy-on-write has copied in this process so far, directories of blocks included: what tests look at to
/// see that an edit copies no more than it touches. Any thread.
std::size_t storageBytesCopied();

/// Adds to that figure.
void countStorageBytesCopied(std::size_t bytes);

/// A large piece of memory from which many blocks are cut, given back to the system with the last of them. One large
/// piece costs far fewer page faults than as many small ones (see `pagememory`).
class BlockSlab {
public:
    /// Room for `count` blocks of `bytes` (a multiple of 64) each. The caller holds one reference. Throws
    /// std::bad_alloc.
    static BlockSlab* make(std::size_t bytes, std::size_t count);

    /// Memory for the next block, with a reference that `release` gives back; null when none is left.
    void* cut();

    void release() noexcept;

private:
    BlockSlab(void* memory, std::size_t bytes, std::size_t count)
        : memory_(static_cast<std::byte*>(memory)), bytes_(bytes), count_(count) {}

    std::atomic<std::size_t> references_ = 1;
    std::byte* memory_;
    std::size_t bytes_;
    std::size_t count_;
    std::size_t used_ = 0;
};

/// Whether nobody else refers to what `shared` points to. What others wrote or read before they let go of it has
/// happened by then: `use_count` alone would not say that.
template <class T>
bool isSoleOwner(const std::shared_ptr<T>& shared) {
    if (shared.use_count() != 1)
        return false;
    std::atomic_thread_fence(std::memory_order_acquire);
    return true;
}

/// What stands before the items of a block.
struct alignas(64) BlockHead {
    std::atomic<std::uint32_t> references = 1;
    /// Items alive in a block of a type with a destructor; 0 for others.
    std::uint32_t live = 0;
    BlockSlab* slab = nullptr;
};

/// Memory for a head and `itemBytes` behind it, cut from `slab` when that is given and has some left.
BlockHead* makeBlock(std::size_t itemBytes, BlockSlab* slab);
void freeBlock(BlockHead* head) noexcept;

/// A counted reference to a block: a head and an array of T behind it. A block is changed only while one reference to
/// it exists. References may be copied and dropped on any thread.
template <class T>
class BlockRef {
public:
    static constexpr std::size_t bytesFor(std::size_t capacity) { return (capacity * sizeof(T) + 63) / 64 * 64; }

    BlockRef() = default;

    /// A new block, its items not made yet.
    static BlockRef make(std::size_t capacity, BlockSlab* slab = nullptr) {
        BlockRef block;
        block.head_ = makeBlock(bytesFor(capacity), slab);
        return block;
    }

    /// A new block with copies of the first `count` items.
    BlockRef clone(std::size_t count, std::size_t capacity) const {
        BlockRef copy = make(capacity);
        std::uninitialized_copy_n(items(), count, copy.items());
        copy.setLive(count);
        countStorageBytesCopied(count * sizeof(T));
        return copy;
    }

    BlockRef(const BlockRef& other) noexcept : head_(other.head_) {
        if (head_)
            head_->references.fetch_add(1, std::memory_order_relaxed);
    }
    BlockRef(BlockRef&& other) noexcept : head_(std::exchange(other.head_, nullptr)) {}
    BlockRef& operator=(BlockRef other) noexcept {
        std::swap(head_, other.head_);
        return *this;
    }
    ~BlockRef() {
        if (head_ && head_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            if constexpr (!std::is_trivially_destructible_v<T>)
                std::destroy_n(items(), head_->live);
            freeBlock(head_);
        }
    }

    explicit operator bool() const { return head_; }
    bool isShared() const { return head_->references.load(std::memory_order_acquire) != 1; }

    T* items() const { return std::launder(reinterpret_cast<T*>(head_ + 1)); }

    /// Says how many items have been made, for types that must be destroyed.
    void setLive(std::size_t count) {
        if constexpr (!std::is_trivially_destructible_v<T>)
            head_->live = static_cast<std::uint32_t>(count);
    }

private:
    BlockHead* head_ = nullptr;
};

} // namespace quelm
