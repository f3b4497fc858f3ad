#include "JSONCore/KeyIndex.h"

#include "JSONCore/NumberedKey.h"
#include "TextCore/CanonicalText.h"
#include "TextCore/Check.h"
#include "TextCore/UTF8.h"

#include <algorithm>
#include <array>
#include <bit>

namespace quelm {

KeyIndex::KeyIndex(std::size_t expectedKeys) {
    // A few keys more than there are at first cost no move of the whole table.
    const std::size_t capacity = expectedKeys + expectedKeys / 8 + 16;
    entries_.reserve(capacity);
    slots_.resize(std::bit_ceil(capacity * 2));
}

KeyIndex::KeyIndex(std::span<const std::string_view> keys) : KeyIndex(keys.size()) {
    // The table of a large object is in no cache: the slots of some keys are called for while those before are filled
    // in.
    constexpr std::size_t stride = 16;
    std::array<std::uint64_t, stride> hashes;
    for (; !keys.empty(); keys = keys.subspan(std::min(stride, keys.size()))) {
        const auto some = keys.first(std::min(stride, keys.size()));
        for (std::size_t i = 0; i < some.size(); ++i) {
            hashes[i] = canonical::hash(some[i]);
            __builtin_prefetch(&slots_[hashes[i] & (slots_.size() - 1)]);
        }
        for (std::size_t i = 0; i < some.size(); ++i)
            add(some[i], hashes[i]);
    }
}

const KeyIndex::Entry* KeyIndex::find(std::string_view key, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = hash & mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
        const Entry& entry = entries_[slots_[slot] - 1];
        if (entry.hash == hash && canonical::equal(entry.key, key))
            return &entry;
    }
    return nullptr;
}

std::int64_t KeyIndex::count(std::string_view key) const {
    const Entry* entry = find(key, canonical::hash(key));
    return entry ? entry->count : 0;
}

void KeyIndex::add(std::string_view key) {
    add(key, canonical::hash(key));
}

void KeyIndex::add(std::string_view key, std::uint64_t hash) {
    if (const Entry* entry = find(key, hash)) {
        ++entries_[static_cast<std::size_t>(entry - entries_.data())].count;
        return;
    }
    if ((entries_.size() + 1) * 2 > slots_.size())
        rebuild();
    entries_.push_back({key, hash, 1});
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot] != 0)
        slot = (slot + 1) & mask;
    slots_[slot] = static_cast<std::uint32_t>(entries_.size());
}

void KeyIndex::remove(std::string_view key) {
    const Entry* entry = find(key, canonical::hash(key));
    require(entry && entry->count > 0, "a key that is removed from an index is in it");
    // An entry without occurrences stays until the table is rebuilt.
    if (--entries_[static_cast<std::size_t>(entry - entries_.data())].count == 0)
        reopenNumber(key);
}

void KeyIndex::rebuild() {
    std::erase_if(entries_, [](const Entry& entry) { return entry.count == 0; });
    slots_.assign(std::bit_ceil(std::max<std::size_t>(16, (entries_.size() + 1) * 4)), 0);
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t index = 0; index < entries_.size(); ++index) {
        std::size_t slot = entries_[index].hash & mask;
        while (slots_[slot] != 0)
            slot = (slot + 1) & mask;
        slots_[slot] = static_cast<std::uint32_t>(index + 1);
    }
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
                                   [&](const Entry& entry) { return right.count(entry.key) == entry.count; });
    };
    return countsAll(*this, other) && countsAll(other, *this);
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
