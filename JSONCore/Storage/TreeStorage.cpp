#include "JSONCore/Storage/TreeStorage.h"

#include "JSONCore/JSONEscapes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>

namespace quelm {

namespace {

/// A short list that outgrows its room moves to twice the room, up to this many children; beyond, it becomes a large
/// one, so that the room left behind stays small beside the edits that were made.
constexpr std::size_t longestMovedList = 64;

} // namespace

TreeStorage TreeStorage::withHolder() {
    TreeStorage storage;
    storage.lists.append(listHead(0, 0));
    storage.nodes.append(NodeRecord::emptyContainer(NodeKind::array, {}, NodeRecord::noParent));
    return storage;
}

SharedText TreeStorage::sharedText(TextRef ref) const {
    if (ref.length == 0)
        return {};
    if (ref.isInArena)
        return SharedText(arena.ownerOf(ref.offset), arena.text(ref.offset, ref.length));
    return source.slice(ref.offset, ref.length);
}

TextRef TreeStorage::store(std::string_view text) {
    if (text.empty())
        return {};
    const std::less_equal<const char*> notAfter;
    const bool isInSource =
        notAfter(source.data(), text.data()) && notAfter(text.data() + text.size(), source.data() + source.size());
    if (isInSource && !json::needsEscape(text))
        return {static_cast<std::uint32_t>(text.data() - source.data()), static_cast<std::uint32_t>(text.size()),
                false};
    if (const auto offset = arena.offsetOf(text))
        return {*offset, static_cast<std::uint32_t>(text.size()), true};
    return append(text);
}

TextRef TreeStorage::append(std::string_view text) {
    if (text.empty())
        return {};
    return {arena.append(text), static_cast<std::uint32_t>(text.size()), true};
}

void TreeStorage::setLargeList(NodeRecord& container, const std::uint32_t* ids, std::size_t count) {
    LargeChildList list;
    list.append({ids, count});
    container.first = static_cast<std::uint32_t>(largeLists.size());
    container.flags |= NodeRecord::largeList;
    largeLists.append(list);
}

void TreeStorage::insertChild(NodeID container, std::size_t index, NodeID child) {
    const NodeRecord& before = record(container);
    if (before.hasLargeList()) {
        largeLists.edit(before.first).insert(index, static_cast<std::uint32_t>(child.raw));
        return;
    }
    const std::uint32_t head = lists[before.first];
    const std::size_t count = head & 0xFFFF;
    if (count == head >> 16) {
        growShortList(container, index, child);
        return;
    }
    std::uint32_t* list = &lists.edit(before.first);
    std::memmove(list + index + 2, list + index + 1, (count - index) * sizeof(std::uint32_t));
    list[index + 1] = static_cast<std::uint32_t>(child.raw);
    *list = listHead(count + 1, head >> 16);
}

void TreeStorage::growShortList(NodeID container, std::size_t index, NodeID child) {
    NodeRecord& owner = editRecord(container);
    const std::uint32_t* old = &lists[owner.first];
    const std::size_t count = *old & 0xFFFF;
    if (count >= longestMovedList) {
        LargeChildList list;
        list.append({old + 1, count});
        list.insert(index, static_cast<std::uint32_t>(child.raw));
        largeLists.append(list);
        owner.first = static_cast<std::uint32_t>(largeLists.size() - 1);
        owner.flags |= NodeRecord::largeList;
        return;
    }
    std::array<std::uint32_t, longestMovedList + 1> ids;
    std::copy_n(old + 1, index, ids.begin());
    ids[index] = static_cast<std::uint32_t>(child.raw);
    std::copy_n(old + 1 + index, count - index, ids.begin() + static_cast<std::ptrdiff_t>(index) + 1);

    const std::size_t room = std::max<std::size_t>(4, count * 2);
    std::uint32_t* list = lists.room(room + 1).data();
    owner.first = static_cast<std::uint32_t>(lists.size());
    *list = listHead(count + 1, room);
    std::copy_n(ids.begin(), count + 1, list + 1);
    std::fill_n(list + count + 2, room - count - 1, 0);
    lists.commit(room + 1);
}

void TreeStorage::removeChild(NodeID container, std::size_t index) {
    const NodeRecord& owner = record(container);
    if (owner.hasLargeList()) {
        largeLists.edit(owner.first).erase(index, 1);
        return;
    }
    std::uint32_t* list = &lists.edit(owner.first);
    const std::size_t count = *list & 0xFFFF;
    std::memmove(list + index + 1, list + index + 2, (count - index - 1) * sizeof(std::uint32_t));
    *list = listHead(count - 1, *list >> 16);
}

} // namespace quelm
