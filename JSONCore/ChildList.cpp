#include "JSONCore/ChildList.h"

#include "TextCore/Check.h"

namespace quelm {

namespace {

/// The index of `id` among `count` ids, or `count`. Sixteen at a time, without a branch among them, so that the
/// compiler compares whole vectors.
std::size_t find(const std::uint32_t* ids, std::size_t count, std::uint32_t id) {
    constexpr std::size_t stride = 16;
    std::size_t at = 0;
    for (; count - at >= stride; at += stride) {
        std::uint32_t hit = 0;
        for (std::size_t i = 0; i < stride; ++i)
            hit |= static_cast<std::uint32_t>(ids[at + i] == id);
        if (hit != 0)
            break;
    }
    while (at < count && ids[at] != id)
        ++at;
    return at;
}

} // namespace

NodeID ChildList::operator[](std::int64_t index) const {
    require(index >= 0 && index < size(), "the index of a child is below the number of children");
    const auto position = static_cast<std::size_t>(index);
    return NodeID{static_cast<std::int32_t>(list_ ? (*list_)[position] : ids_[position])};
}

std::int64_t ChildList::indexOf(NodeID id) const {
    const auto raw = static_cast<std::uint32_t>(id.raw);
    if (!list_) {
        const std::size_t at = find(ids_, size_, raw);
        return at < size_ ? static_cast<std::int64_t>(at) : -1;
    }
    for (std::size_t block = 0; block < list_->blockCount(); ++block) {
        if (!list_->summary(block).mayContain(raw))
            continue;
        const auto ids = list_->block(block);
        const std::size_t at = find(ids.data(), ids.size(), raw);
        if (at < ids.size())
            return static_cast<std::int64_t>(list_->blockStart(block) + at);
    }
    return -1;
}

} // namespace quelm
