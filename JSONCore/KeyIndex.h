#pragma once

#include "TextCore/PageMemory.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quelm {

/// How often each key occurs in one object, keys compared by canonical equivalence. A hash table with open addressing,
/// 24 bytes a key; every operation O(1) amortised beside reading the key, and a key of kilobytes that was added is not
/// read again where it is asked for, removed or added by the same view. The keys are views that must stay valid for the
/// life of the index, also when they have been removed.
///
/// Invariants:
/// 1. No two entries have equivalent keys.
/// 2. A slot that is in use holds 1 + the index of an entry in its low bits, as many as number all slots, and the
/// highest
///    bits of the hash of that entry's key in the others. Every entry has one slot, and between the slot that its hash
///    names and that one, going round, all are in use.
/// 3. The number of slots is a power of two, and no more than three quarters of them are in use.
/// 4. A hash that is remembered for a place in memory is that of the key, of the given length, that stands there.
class KeyIndex {
public:
    explicit KeyIndex(std::size_t expectedKeys);

    std::int64_t count(std::string_view key) const;
    void add(std::string_view key);
    /// The same for many keys, faster.
    void add(std::span<const std::string_view> keys);
    /// The key must have been added as often as it is removed.
    void remove(std::string_view key);

    /// `base` if no key is equal to it, else "base 2", "base 3"… the first that no key is equal to. Asking again goes
    /// on where the last answer was found.
    std::string uniqueKey(std::string_view base);

    /// Whether both count the same keys: for tests.
    bool hasSameCounts(const KeyIndex& other) const;

    /// Checks the invariants: for tests. A violation is a programming error.
    void checkInvariants() const;

private:
    /// Takes what is large from `pagememory`: the first touch of ordinary pages would cost as much as filling the
    /// table.
    template <class T>
    struct PageAllocator {
        using value_type = T;
        T* allocate(std::size_t count) { return static_cast<T*>(pagememory::allocate(count * sizeof(T))); }
        void deallocate(T* memory, std::size_t count) noexcept { pagememory::release(memory, count * sizeof(T)); }
        friend bool operator==(PageAllocator, PageAllocator) { return true; }
    };

    struct Entry {
        const char* data;
        std::uint32_t length;
        std::uint32_t count;
        std::string_view key() const { return {data, length}; }
    };
    /// What is known of the numbered keys of a stem: all from 2 to below `firstFree` are taken.
    struct Stem {
        std::string base;
        std::int64_t firstFree;
    };

    struct LongKey {
        std::size_t length;
        std::uint64_t hash;
    };

    /// Remembered or worked out.
    std::uint64_t hashOf(std::string_view key) const;
    /// The same of a key that is being added, remembering it when the key is long.
    std::uint64_t rememberedHash(std::string_view key);
    std::size_t mask() const { return slots_.size() - 1; }
    std::uint32_t slotFor(std::size_t entry, std::uint64_t hash) const;
    /// The index of the key's entry, or the number of entries.
    std::size_t find(std::string_view key, std::uint64_t hash) const;
    void add(std::string_view key, std::uint64_t hash);
    void link(std::size_t entry, std::uint64_t hash);
    void makeSlots(std::size_t keys);
    void grow();
    Stem& stem(std::string_view base);
    void reopenNumber(std::string_view removedKey);

    std::vector<Entry, PageAllocator<Entry>> entries_;
    std::vector<std::uint32_t, PageAllocator<std::uint32_t>> slots_;
    std::vector<Stem> stems_;
    std::unordered_map<const char*, LongKey> longKeys_;
};

} // namespace quelm
