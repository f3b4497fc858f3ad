#include "JSONCore/Storage/BlockMemory.h"

#include "TextCore/PageMemory.h"

#include <new>

namespace quelm {

namespace {

std::atomic<std::size_t> bytesCopied = 0;

} // namespace

std::size_t storageBytesCopied() {
    return bytesCopied.load(std::memory_order_relaxed);
}

void countStorageBytesCopied(std::size_t bytes) {
    bytesCopied.fetch_add(bytes, std::memory_order_relaxed);
}

BlockSlab* BlockSlab::make(std::size_t bytes, std::size_t count) {
    void* memory = pagememory::allocate(bytes * count);
    try {
        return new BlockSlab(memory, bytes, count);
    } catch (...) {
        pagememory::release(memory, bytes * count);
        throw;
    }
}

void* BlockSlab::cut() {
    if (used_ == count_)
        return nullptr;
    references_.fetch_add(1, std::memory_order_relaxed);
    return memory_ + bytes_ * used_++;
}

void BlockSlab::release() noexcept {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    pagememory::release(memory_, bytes_ * count_);
    delete this;
}

BlockHead* makeBlock(std::size_t itemBytes, BlockSlab* slab) {
    if (slab) {
        if (void* memory = slab->cut()) {
            auto* head = new (memory) BlockHead;
            head->slab = slab;
            return head;
        }
    }
    void* memory = ::operator new(sizeof(BlockHead) + itemBytes, std::align_val_t(alignof(BlockHead)));
    return new (memory) BlockHead;
}

void freeBlock(BlockHead* head) noexcept {
    if (head->slab)
        head->slab->release();
    else
        ::operator delete(head, std::align_val_t(alignof(BlockHead)));
}

} // namespace quelm
