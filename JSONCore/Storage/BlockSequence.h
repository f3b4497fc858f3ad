#pragma once

#include "JSONCore/Storage/BlockMemory.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace quelm {

/// What a block of ids says about the ids in it: none is outside the range. It may be wider than need be.
struct IDRange {
    std::uint32_t low = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t high = 0;

    void include(std::uint32_t id) {
        low = std::min(low, id);
        high = std::max(high, id);
    }
    bool mayContain(std::uint32_t id) const { return low <= id && id <= high; }
};

/// A sequence of small items that grows and shrinks anywhere, in blocks of about 64 KB: an edit moves the items of one
/// block and adjusts a directory of one entry a block. Copies are O(1) and share blocks; the first change of a shared
/// block copies that block alone, and the directory.
///
/// Every block has a number that it keeps while blocks come and go before it, so that a caller can remember where an
/// item is: changes report to a tracker, `placed(number, items)`, whatever items came to stand in a block of another
/// number, and `dropped(items)` those that left.
///
/// `Summary` describes the items of a block through `include(item)`; it is made anew when blocks are split or joined
/// and only widened by other inserts, never narrowed by removals.
///
/// Invariants:
/// 1. `starts[b]` is the position of the first item of block b; `size_` ends the last one.
/// 2. No block is empty.
/// 3. `ordinals[numbers[b]] == b`; numbers of no block are in `freeNumbers`.
/// 4. Every item of block b is included in `summaries[b]`.
template <class T, class Summary>
class BlockSequence {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    static constexpr std::size_t blockCapacity = 65536 / sizeof(T);

    BlockSequence() = default;
    BlockSequence(const BlockSequence&) = default;
    BlockSequence(BlockSequence&& other) noexcept
        : directory_(std::move(other.directory_)), size_(std::exchange(other.size_, 0)) {}
    BlockSequence& operator=(BlockSequence other) noexcept {
        std::swap(directory_, other.directory_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~BlockSequence() = default;

    struct NotTracked {
        void placed(std::uint32_t, std::span<const T>) const {}
        void dropped(std::span<const T>) const {}
    };

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    const T& operator[](std::size_t position) const {
        const std::size_t block = blockAt(position);
        return directory_->blocks[block].items()[position - directory_->starts[block]];
    }

    std::size_t blockCount() const { return directory_ ? directory_->blocks.size() : 0; }
    std::span<const T> block(std::size_t ordinal) const {
        return {directory_->blocks[ordinal].items(), countOf(ordinal)};
    }
    std::size_t blockStart(std::size_t ordinal) const { return directory_->starts[ordinal]; }
    const Summary& summary(std::size_t ordinal) const { return directory_->summaries[ordinal]; }

    /// The block that holds a position below `size()`. O(log blocks).
    std::size_t blockAt(std::size_t position) const {
        const auto& starts = directory_->starts;
        return static_cast<std::size_t>(std::upper_bound(starts.begin(), starts.end(), position) - starts.begin()) - 1;
    }

    /// The block that bears a number now. O(1).
    std::size_t ordinalOf(std::uint32_t number) const { return directory_->ordinals[number]; }

    /// Adds items at the end, filling blocks whole.
    void append(std::span<const T> items) {
        Directory& directory = ownDirectory();
        while (!items.empty()) {
            std::size_t last = directory.blocks.size();
            if (last == 0 || countOf(last - 1) == blockCapacity) {
                addBlock(directory, last, size_);
            } else {
                --last;
            }
            const std::size_t filled = countOf(last);
            const std::size_t count = std::min(items.size(), blockCapacity - filled);
            std::memcpy(ownBlock(last).items() + filled, items.data(), count * sizeof(T));
            for (const T& item : items.first(count))
                directory.summaries[last].include(item);
            size_ += static_cast<std::uint32_t>(count);
            items = items.subspan(count);
        }
    }

    template <class Tracker = NotTracked>
    void insert(std::size_t position, const T& item, const Tracker& tracker = {}) {
        require(position <= size_, "an item is inserted within the sequence or at its end");
        Directory& directory = ownDirectory();
        if (directory.blocks.empty())
            addBlock(directory, 0, 0);
        std::size_t ordinal = position == 0 ? 0 : blockAt(position - 1);
        if (countOf(ordinal) == blockCapacity) {
            split(ordinal, blockCapacity / 2, tracker);
            ordinal = position == 0 ? 0 : blockAt(position - 1);
        }
        const std::size_t count = countOf(ordinal);
        const std::size_t within = position - directory.starts[ordinal];
        T* items = ownBlock(ordinal).items();
        std::memmove(items + within + 1, items + within, (count - within) * sizeof(T));
        items[within] = item;
        directory.summaries[ordinal].include(item);
        shiftStarts(ordinal + 1, 1);
        ++size_;
        tracker.placed(directory.numbers[ordinal], std::span<const T>(items + within, 1));
    }

    template <class Tracker = NotTracked>
    void erase(std::size_t position, std::size_t count, const Tracker& tracker = {}) {
        replace(position, count, BlockSequence(), tracker);
    }

    /// Puts the items of `other` in the place of `count` items. O(blocks) beside the items of the blocks at the two
    /// ends, for any number of items: whole blocks are dropped and taken over.
    template <class Tracker = NotTracked>
    void replace(std::size_t position, std::size_t count, BlockSequence other, const Tracker& tracker = {}) {
        require(position <= size_ && count <= size_ - position, "the replaced items lie within the sequence");
        if (count == 0 && other.empty())
            return;
        if (other.empty() && eraseWithinBlock(position, count, tracker))
            return;
        if (count == 0 && other.size() == 1) {
            insert(position, other[0], tracker);
            return;
        }
        // Splitting leaves the items as they are; once all memory is taken, the rest cannot fail.
        ownDirectory();
        splitAt(position + count, tracker);
        splitAt(position, tracker);
        directory_->makeRoom(other.blockCount());
        if (!other.empty())
            other.ownDirectory();
        const std::size_t first = position == size_ ? blockCount() : blockAt(position);
        const std::size_t last = position + count == size_ ? blockCount() : blockAt(position + count);
        const std::size_t added = takeBlocks(first, last, position, count, other, tracker);
        // Join the seams, the later one first so that the earlier keeps its place.
        joinIfSmall(first + added, tracker);
        joinIfSmall(first, tracker);
    }

private:
    struct Directory {
        std::vector<BlockRef<T>> blocks;
        std::vector<std::uint32_t> starts;
        std::vector<Summary> summaries;
        std::vector<std::uint32_t> numbers;
        std::vector<std::uint32_t> ordinals;
        std::vector<std::uint32_t> freeNumbers;

        /// Takes the memory for `added` more blocks, so that adding and dropping blocks afterwards cannot fail.
        void makeRoom(std::size_t added) {
            const auto reserve = [](auto& entries, std::size_t wanted) {
                if (entries.capacity() < wanted)
                    entries.reserve(std::max(wanted, entries.capacity() * 2));
            };
            const std::size_t wanted = blocks.size() + added;
            reserve(blocks, wanted);
            reserve(starts, wanted);
            reserve(summaries, wanted);
            reserve(numbers, wanted);
            reserve(ordinals, ordinals.size() + added);
            reserve(freeNumbers, ordinals.size() + added);
        }

        std::uint32_t takeNumber() {
            if (freeNumbers.empty()) {
                ordinals.push_back(0);
                return static_cast<std::uint32_t>(ordinals.size() - 1);
            }
            const std::uint32_t number = freeNumbers.back();
            freeNumbers.pop_back();
            return number;
        }
        void renumberFrom(std::size_t ordinal) {
            for (; ordinal < numbers.size(); ++ordinal)
                ordinals[numbers[ordinal]] = static_cast<std::uint32_t>(ordinal);
        }
        std::size_t bytes() const {
            return blocks.size() * (sizeof(BlockRef<T>) + sizeof(Summary) + 2 * sizeof(std::uint32_t)) +
                   (ordinals.size() + freeNumbers.size()) * sizeof(std::uint32_t);
        }
    };

    std::size_t countOf(std::size_t ordinal) const {
        const auto& starts = directory_->starts;
        return (ordinal + 1 < starts.size() ? starts[ordinal + 1] : size_) - starts[ordinal];
    }

    Directory& ownDirectory() {
        if (!directory_) {
            directory_ = std::make_shared<Directory>();
        } else if (!isSoleOwner(directory_)) {
            directory_ = std::make_shared<Directory>(*directory_);
            countStorageBytesCopied(directory_->bytes());
        }
        return *directory_;
    }

    BlockRef<T>& ownBlock(std::size_t ordinal) {
        BlockRef<T>& block = directory_->blocks[ordinal];
        if (block.isShared())
            block = block.clone(countOf(ordinal), blockCapacity);
        return block;
    }

    /// An empty block before the one at `ordinal`; the caller fills it at once. No effect when it throws.
    void addBlock(Directory& directory, std::size_t ordinal, std::size_t start) {
        directory.makeRoom(1);
        BlockRef<T> block = BlockRef<T>::make(blockCapacity);
        const auto at = static_cast<std::ptrdiff_t>(ordinal);
        directory.blocks.insert(directory.blocks.begin() + at, std::move(block));
        directory.starts.insert(directory.starts.begin() + at, static_cast<std::uint32_t>(start));
        directory.summaries.insert(directory.summaries.begin() + at, Summary());
        directory.numbers.insert(directory.numbers.begin() + at, directory.takeNumber());
        directory.renumberFrom(ordinal);
    }

    void dropBlocks(std::size_t first, std::size_t last) {
        Directory& directory = *directory_;
        for (std::size_t ordinal = first; ordinal < last; ++ordinal)
            directory.freeNumbers.push_back(directory.numbers[ordinal]);
        const auto drop = [first, last](auto& entries) {
            entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(first),
                          entries.begin() + static_cast<std::ptrdiff_t>(last));
        };
        drop(directory.blocks);
        drop(directory.starts);
        drop(directory.summaries);
        drop(directory.numbers);
        directory.renumberFrom(first);
    }

    void shiftStarts(std::size_t ordinal, std::int64_t by) {
        auto& starts = directory_->starts;
        for (; ordinal < starts.size(); ++ordinal)
            starts[ordinal] = static_cast<std::uint32_t>(starts[ordinal] + by);
    }

    void summarize(std::size_t ordinal) {
        Summary summary;
        for (const T& item : block(ordinal))
            summary.include(item);
        directory_->summaries[ordinal] = summary;
    }

    /// Makes the items from `within` on a block of their own, after the block they stood in.
    template <class Tracker>
    void split(std::size_t ordinal, std::size_t within, const Tracker& tracker) {
        Directory& directory = *directory_;
        const std::size_t count = countOf(ordinal);
        addBlock(directory, ordinal + 1, directory.starts[ordinal] + within);
        std::memcpy(directory.blocks[ordinal + 1].items(), directory.blocks[ordinal].items() + within,
                    (count - within) * sizeof(T));
        summarize(ordinal);
        summarize(ordinal + 1);
        tracker.placed(directory.numbers[ordinal + 1], block(ordinal + 1));
    }

    template <class Tracker>
    void splitAt(std::size_t position, const Tracker& tracker) {
        if (position == 0 || position == size_)
            return;
        const std::size_t ordinal = blockAt(position);
        if (const std::size_t within = position - directory_->starts[ordinal])
            split(ordinal, within, tracker);
    }

    template <class Tracker>
    bool eraseWithinBlock(std::size_t position, std::size_t count, const Tracker& tracker) {
        const std::size_t ordinal = blockAt(position);
        const std::size_t within = position - directory_->starts[ordinal];
        const std::size_t before = countOf(ordinal);
        if (within + count > before || count == before)
            return false;
        ownDirectory();
        T* items = ownBlock(ordinal).items();
        tracker.dropped(block(ordinal).subspan(within, count));
        std::memmove(items + within, items + within + count, (before - within - count) * sizeof(T));
        shiftStarts(ordinal + 1, -static_cast<std::int64_t>(count));
        size_ -= static_cast<std::uint32_t>(count);
        joinIfSmall(ordinal + 1, tracker);
        joinIfSmall(ordinal, tracker);
        return true;
    }

    /// Replaces whole blocks by those of `other` and returns their number.
    template <class Tracker>
    std::size_t takeBlocks(std::size_t first, std::size_t last, std::size_t position, std::size_t count,
                           BlockSequence& other, const Tracker& tracker) {
        for (std::size_t ordinal = first; ordinal < last; ++ordinal)
            tracker.dropped(block(ordinal));
        dropBlocks(first, last);
        size_ -= static_cast<std::uint32_t>(count);
        shiftStarts(first, static_cast<std::int64_t>(other.size()) - static_cast<std::int64_t>(count));
        Directory& directory = *directory_;
        const std::size_t added = other.blockCount();
        if (added == 0)
            return 0;
        Directory& taken = other.ownDirectory();
        for (std::size_t ordinal = 0; ordinal < added; ++ordinal) {
            taken.starts[ordinal] += static_cast<std::uint32_t>(position);
            taken.numbers[ordinal] = directory.takeNumber();
        }
        const auto splice = [first](auto& entries, auto& from) {
            entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(first), std::make_move_iterator(from.begin()),
                           std::make_move_iterator(from.end()));
        };
        splice(directory.blocks, taken.blocks);
        splice(directory.starts, taken.starts);
        splice(directory.summaries, taken.summaries);
        splice(directory.numbers, taken.numbers);
        directory.renumberFrom(first);
        size_ += other.size_;
        for (std::size_t ordinal = first; ordinal < first + added; ++ordinal)
            tracker.placed(directory.numbers[ordinal], block(ordinal));
        return added;
    }

    /// Joins a block to the one before it when both together fill no more than half a block, so that blocks stay few.
    template <class Tracker>
    void joinIfSmall(std::size_t ordinal, const Tracker& tracker) {
        if (ordinal == 0 || ordinal >= blockCount())
            return;
        const std::size_t before = countOf(ordinal - 1);
        const std::size_t count = countOf(ordinal);
        if (before + count > blockCapacity / 2)
            return;
        if (directory_->blocks[ordinal - 1].isShared())
            return; // a copy would have to be made of it first
        T* items = directory_->blocks[ordinal - 1].items();
        std::memcpy(items + before, directory_->blocks[ordinal].items(), count * sizeof(T));
        dropBlocks(ordinal, ordinal + 1);
        summarize(ordinal - 1);
        tracker.placed(directory_->numbers[ordinal - 1], std::span<const T>(items + before, count));
    }

    std::shared_ptr<Directory> directory_;
    std::uint32_t size_ = 0;
};

} // namespace quelm
