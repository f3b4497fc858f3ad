#pragma once

#include "JSONCore/Storage/TreeStorage.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// Puts the members of objects in the order of their keys: by the Unicode scalar values of their NFC forms, members with
/// equal keys in document order. Keeps its working memory from one object to the next.
class MemberSorter {
public:
    /// Appends the sorted members to `sorted`.
    void appendSorted(const TreeStorage& storage, ChildList members, std::vector<NodeID>& sorted);

private:
    struct Member {
        /// The first eight bytes of the key, the first the most significant: settles most comparisons by itself.
        std::uint64_t prefix;
        std::string_view key;
        NodeID id;

        bool isBefore(const Member& other) const {
            return prefix != other.prefix ? prefix < other.prefix : key < other.key;
        }
    };

    std::vector<Member> members_;
    /// Keys that had to be normalised.
    std::deque<std::string> forms_;
};

} // namespace quelm
