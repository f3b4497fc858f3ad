#pragma once

#include "JSONCore/Storage/TreeStorage.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// Puts the members of objects in the order of their keys: by the Unicode scalar values of their NFC forms, members
/// with equal keys in document order. Keeps its working memory from one object to the next.
class MemberSorter {
public:
    /// Appends the sorted members to `sorted`.
    void appendSorted(const TreeStorage& storage, ChildList members, std::vector<NodeID>& sorted);

private:
    /// A member as it is sorted: small, because it is moved about.
    struct Entry {
        /// The first eight bytes of the key, the first the most significant: settles most comparisons by itself.
        std::uint64_t prefix;
        /// Its place in `keys_`, which is its place among the members.
        std::uint32_t member;
    };

    void readKeys(const TreeStorage& storage, ChildList members);
    bool isBefore(const Entry& left, const Entry& right) const {
        return left.prefix != right.prefix ? left.prefix < right.prefix : keys_[left.member] < keys_[right.member];
    }
    void sortEntries();

    std::vector<Entry> entries_;
    std::vector<std::string_view> keys_;
    std::vector<NodeID> ids_;
    /// Keys that had to be normalised.
    std::deque<std::string> forms_;
};

} // namespace quelm
