#include "JSONCore/SortedMembers.h"

#include "TextCore/CanonicalText.h"

#include <algorithm>

namespace quelm {

namespace {

std::uint64_t prefixOf(std::string_view key) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof(prefix); ++i)
        prefix = prefix << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    return prefix;
}

} // namespace

void MemberSorter::appendSorted(const TreeStorage& storage, ChildList members, std::vector<NodeID>& sorted) {
    members_.clear();
    forms_.clear();
    for (NodeID id : members) {
        std::string normalised;
        std::string_view key = canonical::form(storage.text(storage.record(id).key()), normalised);
        if (!normalised.empty() && key.data() == normalised.data())
            key = forms_.emplace_back(std::move(normalised));
        members_.push_back({prefixOf(key), key, id});
    }
    constexpr std::ptrdiff_t fewMembers = 24;
    const auto isBefore = [](const Member& left, const Member& right) { return left.isBefore(right); };
    if (std::ssize(members_) > fewMembers) {
        std::ranges::stable_sort(members_, isBefore);
    } else {
        // Insertion: stable, and quickest for the few members that most objects have.
        for (auto member = members_.begin(); member != members_.end(); ++member)
            std::rotate(std::upper_bound(members_.begin(), member, *member, isBefore), member, member + 1);
    }
    for (const Member& member : members_)
        sorted.push_back(member.id);
}

} // namespace quelm
