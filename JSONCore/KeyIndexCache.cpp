#include "JSONCore/KeyIndexCache.h"

#include "JSONCore/KeyIndex.h"

namespace quelm {

struct KeyIndexCache::State {
    std::mutex mutex;
    std::unordered_map<NodeID, KeyIndex> indexes;
};

KeyIndexCache::KeyIndexCache() : state_(std::make_unique<State>()) {}
KeyIndexCache::KeyIndexCache(const KeyIndexCache&) : KeyIndexCache() {}
KeyIndexCache::KeyIndexCache(KeyIndexCache&&) noexcept = default;
KeyIndexCache& KeyIndexCache::operator=(const KeyIndexCache& other) {
    if (this != &other)
        state_ = std::make_unique<State>();
    return *this;
}
KeyIndexCache& KeyIndexCache::operator=(KeyIndexCache&&) noexcept = default;
KeyIndexCache::~KeyIndexCache() = default;

std::mutex& KeyIndexCache::mutex() const {
    return state_->mutex;
}

KeyIndex* KeyIndexCache::find(NodeID object) const {
    const auto found = state_->indexes.find(object);
    return found == state_->indexes.end() ? nullptr : &found->second;
}

KeyIndex& KeyIndexCache::add(NodeID object, KeyIndex index) {
    return state_->indexes.insert_or_assign(object, std::move(index)).first->second;
}

void KeyIndexCache::drop(NodeID object) {
    state_->indexes.erase(object);
}

} // namespace quelm
