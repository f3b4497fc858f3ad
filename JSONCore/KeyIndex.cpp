#include "JSONCore/KeyIndex.h"

#include "JSONCore/KeyHash.h"
#include "JSONCore/NumberedKey.h"
#include "TextCore/CanonicalText.h"
#include "TextCore/Check.h"
#include "TextCore/UTF8.h"

#include <algorithm>
#include <array>
#include <bit>

namespace quelm {

namespace {

/// Shorter keys are hashed faster than it takes to remember their hashes, and remembering costs little beside longer
/// ones.
constexpr std::size_t longKeySize = 4096; // bytes

} // namespace

KeyIndex::KeyIndex(std::size_t expectedKeys) {
    // A few keys more than there are at first cost no move of the whole table.
    const std::size_t capacity = expectedKeys + expectedKeys / 8 + 16;
    entries_.reserve(capacity);
    makeSlots(capacity);
}

void KeyIndex::makeSlots(std::size_t keys) {
    slots_.assign(std::bit_ceil(keys + keys / 3 + 1), 0);
}

std::uint64_t KeyIndex::hashOf(std::string_view key) const {
    if (key.size() >= longKeySize) {
        const auto known = longKeys_.find(key.data());
        if (known != longKeys_.end() && known->second.length == key.size())
            return known->second.hash;
    }
    return keyHash(key);
}

std::uint64_t KeyIndex::rememberedHash(std::string_view key) {
    const std::uint64_t hash = hashOf(key);
    if (key.size() >= longKeySize)
        longKeys_.insert_or_assign(key.data(), LongKey{key.size(), hash});
    return hash;
}

std::uint32_t KeyIndex::slotFor(std::size_t entry, std::uint64_t hash) const {
    const auto low = static_cast<std::uint32_t>(mask());
    return (static_cast<std::uint32_t>(hash >> 32) & ~low) | static_cast<std::uint32_t>(entry + 1);
}

std::size_t KeyIndex::find(std::string_view key, std::uint64_t hash) const {
    const auto low = static_cast<std::uint32_t>(mask());
    const std::uint32_t wanted = static_cast<std::uint32_t>(hash >> 32) & ~low;
    for (std::size_t slot = hash & mask(); slots_[slot] != 0; slot = (slot + 1) & mask()) {
        if ((slots_[slot] & ~low) != wanted)
            continue;
        const std::size_t entry = (slots_[slot] & low) - 1;
        if (canonical::equal(entries_[entry].key(), key))
            return entry;
    }
    return entries_.size();
}

std::int64_t KeyIndex::count(std::string_view key) const {
    const std::size_t entry = find(key, hashOf(key));
    return entry < entries_.size() ? entries_[entry].count : 0;
}

void KeyIndex::add(std::string_view key) {
    add(key, rememberedHash(key));
}

void KeyIndex::add(std::span<const std::string_view> keys) {
    // The table of a large object is in no cache: the slots of some keys are called for while those before are filled
    // in.
    constexpr std::size_t stride = 32;
    std::array<std::uint64_t, stride> hashes;
    for (; !keys.empty(); keys = keys.subspan(std::min(stride, keys.size()))) {
        const auto some = keys.first(std::min(stride, keys.size()));
        for (std::size_t i = 0; i < some.size(); ++i) {
            hashes[i] = rememberedHash(some[i]);
            __builtin_prefetch(&slots_[hashes[i] & mask()]);
        }
        for (std::size_t i = 0; i < some.size(); ++i)
            add(some[i], hashes[i]);
    }
}

void KeyIndex::add(std::string_view key, std::uint64_t hash) {
    if (const std::size_t entry = find(key, hash); entry < entries_.size()) {
        ++entries_[entry].count;
        return;
    }
    if ((entries_.size() + 1) * 4 > slots_.size() * 3)
        grow();
    entries_.push_back({key.data(), static_cast<std::uint32_t>(key.size()), 1});
    link(entries_.size() - 1, hash);
}

void KeyIndex::link(std::size_t entry, std::uint64_t hash) {
    std::size_t slot = hash & mask();
    while (slots_[slot] != 0)
        slot = (slot + 1) & mask();
    slots_[slot] = slotFor(entry, hash);
}

void KeyIndex::remove(std::string_view key) {
    const std::size_t entry = find(key, hashOf(key));
    require(entry < entries_.size() && entries_[entry].count > 0, "a key that is removed from an index is in it");
    // An entry without occurrences stays until the table is made anew.
    if (--entries_[entry].count == 0)
        reopenNumber(key);
}

void KeyIndex::grow() {
    std::erase_if(entries_, [](const Entry& entry) { return entry.count == 0; });
    makeSlots(entries_.size() * 2 + 16);
    for (std::size_t entry = 0; entry < entries_.size(); ++entry)
        link(entry, hashOf(entries_[entry].key()));
}

std::string KeyIndex::uniqueKey(std::string_view base) {
    if (count(base) == 0)
        return std::string(base);
    Stem& known = stem(base);
    for (std::int64_t number = known.firstFree;; ++number) {
        std::string key = numberedKey(base, number);
        if (count(key) == 0) {
            known.firstFree = number;
            return key;
        }
    }
}

bool KeyIndex::hasSameCounts(const KeyIndex& other) const {
    const auto countsAll = [](const KeyIndex& left, const KeyIndex& right) {
        return std::ranges::all_of(left.entries_,
                                   [&](const Entry& entry) { return right.count(entry.key()) == entry.count; });
    };
    return countsAll(*this, other) && countsAll(other, *this);
}

void KeyIndex::checkInvariants() const {
    require(std::has_single_bit(slots_.size()), "there is a power of two of slots");
    require(entries_.size() * 4 <= slots_.size() * 3, "no more than three quarters of the slots are in use");
    for (std::size_t entry = 0; entry < entries_.size(); ++entry) {
        const std::string_view key = entries_[entry].key();
        require(find(key, keyHash(key)) == entry, "every entry is found by its key");
    }
    for (const auto& [data, known] : longKeys_)
        require(keyHash({data, known.length}) == known.hash, "the hash of a long key is remembered as it is");
    const auto inUse = std::ranges::count_if(slots_, [](std::uint32_t slot) { return slot != 0; });
    require(static_cast<std::size_t>(inUse) == entries_.size(), "every entry has one slot");
}

KeyIndex::Stem& KeyIndex::stem(std::string_view base) {
    constexpr std::size_t stemsRemembered = 8;
    const auto known = std::ranges::find(stems_, base, &Stem::base);
    if (known != stems_.end())
        return *known;
    if (stems_.size() == stemsRemembered)
        stems_.erase(stems_.begin());
    return stems_.emplace_back(std::string(base), firstKeyNumber);
}

void KeyIndex::reopenNumber(std::string_view removedKey) {
    // A key in another normal form may be any number of a stem: forget what was known rather than work it out.
    for (Stem& stem : stems_) {
        if (const auto number = keyNumber(removedKey, stem.base))
            stem.firstFree = std::min(stem.firstFree, *number);
        else if (!utf8::isASCII(removedKey) || !utf8::isASCII(stem.base))
            stem.firstFree = firstKeyNumber;
    }
}

} // namespace quelm
