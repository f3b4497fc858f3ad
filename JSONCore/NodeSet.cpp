#include "JSONCore/NodeSet.h"

#include "TextCore/Check.h"

namespace quelm {

bool NodeSet::insert(NodeID id) {
    require(id.raw >= 0, "a node id is not negative");
    if (contains(id))
        return false;
    const auto word = static_cast<std::size_t>(id.raw) / 64;
    while (words_.size() <= word)
        words_.append(0);
    words_.edit(word) |= std::uint64_t{1} << (id.raw % 64);
    ++size_;
    return true;
}

bool NodeSet::remove(NodeID id) {
    if (!contains(id))
        return false;
    words_.edit(static_cast<std::size_t>(id.raw) / 64) &= ~(std::uint64_t{1} << (id.raw % 64));
    --size_;
    return true;
}

} // namespace quelm
