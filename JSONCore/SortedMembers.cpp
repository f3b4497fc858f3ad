#include "JSONCore/SortedMembers.h"

#include "TextCore/CanonicalText.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quelm {

namespace {

constexpr std::size_t prefixSize = sizeof(std::uint64_t);

/// The first eight bytes in memory order, zeros behind a shorter key.
std::uint64_t firstBytes(std::string_view key, bool mayReadBeyond) {
    std::uint64_t bytes = 0;
    if (mayReadBeyond && !key.empty()) {
        std::memcpy(&bytes, key.data(), prefixSize);
        if (key.size() < prefixSize)
            bytes &= (std::uint64_t{1} << (8 * key.size())) - 1;
    } else if (!key.empty()) {
        std::memcpy(&bytes, key.data(), std::min(key.size(), prefixSize));
    }
    return bytes;
}

constexpr std::uint64_t mostSignificantFirst(std::uint64_t bytes) {
    if constexpr (std::endian::native == std::endian::little)
        return std::byteswap(bytes);
    return bytes;
}

constexpr bool isASCII(std::uint64_t bytes) {
    return (bytes & 0x8080'8080'8080'8080) == 0;
}

} // namespace

void MemberSorter::readKeys(const TreeStorage& storage, ChildList members) {
    entries_.clear();
    keys_.clear();
    ids_.clear();
    forms_.clear();
    for (NodeID id : members) {
        const TextRef ref = storage.record(id).key();
        std::string_view key = storage.text(ref);
        std::uint64_t prefix = firstBytes(key, !ref.isInArena); // the source is padded
        if (key.size() > prefixSize || !isASCII(prefix)) {
            std::string normalised;
            key = canonical::form(key, normalised);
            if (!normalised.empty() && key.data() == normalised.data())
                key = forms_.emplace_back(std::move(normalised));
            prefix = firstBytes(key, false);
        }
        entries_.push_back({mostSignificantFirst(prefix), static_cast<std::uint32_t>(keys_.size())});
        keys_.push_back(key);
        ids_.push_back(id);
    }
}

void MemberSorter::sortEntries() {
    const auto isBefore = [this](const Entry& left, const Entry& right) { return this->isBefore(left, right); };
    constexpr std::size_t fewMembers = 32;
    if (entries_.size() > fewMembers) {
        std::ranges::stable_sort(entries_, isBefore);
        return;
    }
    // Insertion: stable, and quickest for the few members that most objects have.
    for (std::size_t next = 1; next < entries_.size(); ++next) {
        const Entry entry = entries_[next];
        std::size_t place = next;
        for (; place > 0 && isBefore(entry, entries_[place - 1]); --place)
            entries_[place] = entries_[place - 1];
        entries_[place] = entry;
    }
}

void MemberSorter::appendSorted(const TreeStorage& storage, ChildList members, std::vector<NodeID>& sorted) {
    readKeys(storage, members);
    sortEntries();
    for (const Entry& entry : entries_)
        sorted.push_back(ids_[entry.member]);
}

} // namespace quelm
