#include "JSONCore/JSONTree.h"

#include "JSONCore/KeyIndex.h"
#include "JSONCore/NumberedKey.h"
#include "JSONCore/PathNotation.h"
#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/CanonicalText.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <utility>

namespace quelm {

namespace {

const NodeRecord& checkedRecord(const TreeStorage& storage, NodeID id) {
    require(id.raw >= 0 && static_cast<std::size_t>(id.raw) < storage.nodes.size(), "a node id is stored in the tree");
    return storage.record(id);
}

/// From this many members on, an object has an index of its keys once its keys are asked for.
constexpr std::int64_t indexedObjectSize = 48;

std::int64_t occurrencesWithoutIndex(const TreeStorage& storage, ChildList members, std::string_view key) {
    return std::ranges::count_if(
        members, [&](NodeID member) { return canonical::equal(storage.text(storage.record(member).key()), key); });
}

/// The index of a large object, built if need be; null for a small one. The cache's mutex must be held.
KeyIndex* keyIndexOf(const TreeStorage& storage, NodeID object, KeyIndexCache& cache) {
    if (KeyIndex* known = cache.find(object))
        return known;
    const ChildList members = storage.children(storage.record(object));
    if (members.size() < indexedObjectSize)
        return nullptr;
    KeyIndex index(static_cast<std::size_t>(members.size()));
    std::array<std::string_view, 256> keys;
    std::size_t count = 0;
    for (NodeID member : members) {
        keys[count++] = storage.text(storage.record(member).key());
        if (count == keys.size()) {
            index.add(keys);
            count = 0;
        }
    }
    index.add(std::span(keys).first(count));
    return &cache.add(object, std::move(index));
}

} // namespace

const TreeStorage& storageOf(const JSONTree& tree) {
    return tree.storage();
}

const TreeStorage& JSONTree::storage() const {
    require(storage_ != nullptr, "a tree that was moved from is not used");
    return *storage_;
}

JSONTree& JSONTree::operator=(const JSONTree& other) {
    // A copy first: storage and key indexes change together or not at all.
    if (this != &other)
        *this = JSONTree(other);
    return *this;
}

JSONTree::JSONTree(NodeKind kind, std::string_view scalar)
    : storage_(std::make_shared<TreeStorage>(TreeStorage::withHolder())) {
    attach(addNode(kind, {}, scalar), holder, 0);
}

JSONTree::JSONTree(std::shared_ptr<TreeStorage> storage) : storage_(std::move(storage)) {}

JSONTree::~JSONTree() = default;

TreeStorage& JSONTree::changeableStorage() {
    require(storage_ != nullptr, "a tree that was moved from is not used");
    if (!isSoleOwner(storage_)) {
        storage_ = std::make_shared<TreeStorage>(*storage_);
        countStorageBytesCopied(sizeof(TreeStorage));
    }
    return *storage_;
}

void JSONTree::requireStored(NodeID id) const {
    checkedRecord(storage(), id);
}

NodeID JSONTree::root() const {
    const ChildList top = storage().children(storage().record(holder));
    require(!top.empty(), "the tree has a top-level value");
    return top.front();
}

std::int64_t JSONTree::nodeCount() const {
    return storage().record(holder).subtreeSize() - std::int64_t{1};
}

std::int64_t JSONTree::storedNodeCount() const {
    return static_cast<std::int64_t>(storage().nodes.size());
}

NodeKind JSONTree::kind(NodeID id) const {
    return checkedRecord(storage(), id).kind;
}

std::string_view JSONTree::key(NodeID id) const {
    return storage().text(checkedRecord(storage(), id).key());
}

std::string_view JSONTree::scalar(NodeID id) const {
    const NodeRecord& record = checkedRecord(storage(), id);
    return isContainer(record.kind) ? std::string_view() : storage().text(record.scalar());
}

SharedText JSONTree::sharedKey(NodeID id) const {
    return storage().sharedText(checkedRecord(storage(), id).key());
}

SharedText JSONTree::sharedScalar(NodeID id) const {
    const NodeRecord& record = checkedRecord(storage(), id);
    return isContainer(record.kind) ? SharedText() : storage().sharedText(record.scalar());
}

ChildList JSONTree::children(NodeID id) const {
    return storage().children(checkedRecord(storage(), id));
}

std::optional<NodeID> JSONTree::parent(NodeID id) const {
    const std::uint32_t parent = checkedRecord(storage(), id).parent;
    if (parent == NodeRecord::noParent)
        return std::nullopt;
    return NodeID{static_cast<std::int32_t>(parent)};
}

std::optional<std::int64_t> JSONTree::indexInParent(NodeID id) const {
    const auto container = parent(id);
    if (!container)
        return std::nullopt;
    const std::int64_t index = children(*container).indexOf(id);
    return index >= 0 ? std::optional(index) : std::nullopt;
}

bool JSONTree::isObjectMember(NodeID id) const {
    const auto container = parent(id);
    return container && kind(*container) == NodeKind::object;
}

std::int64_t JSONTree::subtreeSize(NodeID id) const {
    return checkedRecord(storage(), id).subtreeSize();
}

std::string JSONTree::path(NodeID id) const {
    std::vector<std::string> components;
    for (auto container = parent(id); container && *container != holder; container = parent(id)) {
        if (kind(*container) == NodeKind::array)
            components.push_back("[" + std::to_string(indexInParent(id).value_or(0)) + "]");
        else
            components.push_back(PathNotation::member(key(id)));
        id = *container;
    }
    std::string path = "$";
    for (auto component = components.rbegin(); component != components.rend(); ++component)
        path += *component;
    return path;
}

std::int64_t JSONTree::keyOccurrences(NodeID parent, std::string_view key) const {
    const ChildList members = children(parent);
    if (members.size() >= indexedObjectSize) {
        const std::scoped_lock lock(keyIndexes_.mutex());
        return keyIndexOf(storage(), parent, keyIndexes_)->count(key);
    }
    return occurrencesWithoutIndex(storage(), members, key);
}

void JSONTree::prepareKeyIndex(NodeID parent) const {
    requireStored(parent);
    const std::scoped_lock lock(keyIndexes_.mutex());
    keyIndexOf(storage(), parent, keyIndexes_);
}

std::string JSONTree::uniqueKey(std::string_view base, NodeID parent) const {
    const ChildList members = children(parent);
    if (members.size() >= indexedObjectSize) {
        const std::scoped_lock lock(keyIndexes_.mutex());
        return keyIndexOf(storage(), parent, keyIndexes_)->uniqueKey(base);
    }
    std::string key(base);
    for (std::int64_t number = firstKeyNumber; occurrencesWithoutIndex(storage(), members, key) > 0; ++number)
        key = numberedKey(base, number);
    return key;
}

bool operator==(const JSONTree& left, const JSONTree& right) {
    const TreeStorage& leftStorage = left.storage();
    const TreeStorage& rightStorage = right.storage();
    if (&leftStorage == &rightStorage)
        return true;
    std::vector<std::pair<NodeID, NodeID>> pending{{left.root(), right.root()}};
    while (!pending.empty()) {
        const auto [leftID, rightID] = pending.back();
        pending.pop_back();
        const NodeRecord& leftRecord = leftStorage.record(leftID);
        const NodeRecord& rightRecord = rightStorage.record(rightID);
        if (leftRecord.kind != rightRecord.kind)
            return false;
        if (!isContainer(leftRecord.kind)) {
            if (!canonical::equal(leftStorage.text(leftRecord.scalar()), rightStorage.text(rightRecord.scalar())))
                return false;
            continue;
        }
        const ChildList leftChildren = leftStorage.children(leftRecord);
        const ChildList rightChildren = rightStorage.children(rightRecord);
        if (leftChildren.size() != rightChildren.size())
            return false;
        const bool hasKeys = leftRecord.kind == NodeKind::object;
        for (auto l = leftChildren.begin(), r = rightChildren.begin(); l != leftChildren.end(); ++l, ++r) {
            if (hasKeys && !canonical::equal(leftStorage.text(leftStorage.record(*l).key()),
                                             rightStorage.text(rightStorage.record(*r).key())))
                return false;
            pending.emplace_back(*l, *r);
        }
    }
    return true;
}

NodeID JSONTree::addNode(NodeKind kind, std::string_view key, std::string_view scalar) {
    TreeStorage& storage = changeableStorage();
    if (storage.nodes.size() >= TreeStorage::maximumNodeCount)
        throw std::length_error("a tree stores fewer than 2^31 nodes");
    const TextRef keyRef = storage.store(key);
    if (isContainer(kind))
        storage.nodes.append(NodeRecord::emptyContainer(kind, keyRef, NodeRecord::noParent));
    else
        storage.nodes.append(NodeRecord::scalarNode(kind, keyRef, storage.store(scalar), NodeRecord::noParent));
    return NodeID{static_cast<std::int32_t>(storage.nodes.size() - 1)};
}

std::int64_t JSONTree::attach(NodeID id, NodeID parent, std::int64_t index) {
    require(checkedRecord(storage(), id).parent == NodeRecord::noParent && id != holder,
            "an attached node was detached");
    require(isContainer(checkedRecord(storage(), parent).kind), "a node is attached to a container");
    require(parent != holder || children(holder).empty(), "the holder has no more than one child");
    require(index >= 0 && index <= children(parent).size(),
            "a child is inserted within its parent's list or at its end");

    TreeStorage& storage = changeableStorage();
    // Everything that may need memory comes first, so that running out of it leaves no half-made change.
    storage.editRecord(id);
    for (auto ancestor = std::optional(parent); ancestor; ancestor = this->parent(*ancestor)) {
        require(*ancestor != id, "a node is not attached below itself");
        storage.editRecord(*ancestor);
    }
    storage.insertChild(parent, static_cast<std::size_t>(index), id);

    NodeRecord& record = storage.editRecord(id);
    record.parent = static_cast<std::uint32_t>(parent.raw);
    const std::uint32_t size = record.subtreeSize();
    for (auto ancestor = std::optional(parent); ancestor; ancestor = this->parent(*ancestor))
        storage.editRecord(*ancestor).second += size;

    if (KeyIndex* keys = keyIndexes_.find(parent)) {
        try {
            keys->add(key(id));
        } catch (...) {
            keyIndexes_.drop(parent); // made anew when it is next asked for
        }
    }
    return size;
}

std::optional<JSONTree::Position> JSONTree::detach(NodeID id) {
    const auto index = indexInParent(id);
    if (!index)
        return std::nullopt;
    const NodeID parent = *this->parent(id);

    TreeStorage& storage = changeableStorage();
    storage.editRecord(id);
    for (auto ancestor = std::optional(parent); ancestor; ancestor = this->parent(*ancestor))
        storage.editRecord(*ancestor);
    storage.removeChild(parent, static_cast<std::size_t>(*index));

    if (KeyIndex* keys = keyIndexes_.find(parent)) {
        try {
            keys->remove(key(id));
        } catch (...) {
            keyIndexes_.drop(parent);
        }
    }

    NodeRecord& record = storage.editRecord(id);
    const std::uint32_t size = record.subtreeSize();
    for (auto ancestor = std::optional(parent); ancestor; ancestor = this->parent(*ancestor))
        storage.editRecord(*ancestor).second -= size;
    record.parent = NodeRecord::noParent;
    return Position{parent, *index};
}

void JSONTree::setKey(NodeID id, const SharedText& key) {
    require(id != holder, "the holder has no key");
    TreeStorage& storage = changeableStorage();
    const TextRef ref = storage.store(key.view());
    NodeRecord& record = storage.editRecord(id);
    const auto parent = this->parent(id);
    KeyIndex* keys = parent ? keyIndexes_.find(*parent) : nullptr;
    if (keys) {
        try {
            keys->add(storage.text(ref));
            keys->remove(storage.text(record.key()));
        } catch (...) {
            keyIndexes_.drop(*parent);
        }
    }
    record.setKey(ref);
}

void JSONTree::setValue(NodeID id, NodeKind kind, const SharedText& text) {
    TreeStorage& storage = changeableStorage();
    const TextRef ref = storage.store(text.view());
    NodeRecord& record = storage.editRecord(id);
    record.kind = kind;
    record.setScalar(ref);
}

} // namespace quelm
