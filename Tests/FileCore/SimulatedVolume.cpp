#include "Tests/FileCore/SimulatedVolume.h"

#include <algorithm>

namespace quelm::test {

namespace {

std::size_t anyUpTo(std::size_t most, std::mt19937& random) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
}

bool anyBool(std::mt19937& random) {
    return anyUpTo(1, random) == 1;
}

} // namespace

SimulatedVolume::SimulatedVolume() {
    addNode(Kind::folder, 0755);
}

SimulatedVolume::NodeID SimulatedVolume::addNode(Kind kind, mode_t mode) {
    Node node;
    node.kind = kind;
    node.attributes.mode = mode;
    node.safeAttributes = node.attributes;
    node.time = ++clock_;
    nodes_.push_back(std::move(node));
    return static_cast<NodeID>(nodes_.size()) - 1;
}

void SimulatedVolume::apply(const DataChange& change, std::string& bytes) {
    if (!change.bytes) {
        bytes.resize(change.offset);
        return;
    }
    bytes.resize(std::max(bytes.size(), change.offset + change.bytes->size()));
    std::ranges::copy(*change.bytes, bytes.begin() + static_cast<std::ptrdiff_t>(change.offset));
}

void SimulatedVolume::write(NodeID file, std::size_t offset, std::string_view bytes) {
    Node& node = at(file);
    node.dataChanges.push_back({offset, std::string(bytes)});
    apply(node.dataChanges.back(), node.bytes);
    node.time = ++clock_;
}

void SimulatedVolume::truncate(NodeID file, std::size_t length) {
    Node& node = at(file);
    node.dataChanges.push_back({length, std::nullopt});
    apply(node.dataChanges.back(), node.bytes);
    node.time = ++clock_;
}

std::optional<SimulatedVolume::NodeID> SimulatedVolume::find(NodeID folder, const std::string& name) const {
    const auto& names = at(folder).names;
    const auto found = names.find(name);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

int SimulatedVolume::linkCount(NodeID node) const {
    int count = 0;
    for (const Node& folder : nodes_) {
        for (const auto& [name, named] : folder.names)
            count += named == node ? 1 : 0;
    }
    return count;
}

void SimulatedVolume::apply(NameChanges changes) {
    for (const NameChange& change : changes) {
        auto& names = at(change.folder).names;
        if (change.node)
            names[change.name] = *change.node;
        else
            names.erase(change.name);
    }
    nameChanges_.push_back(std::move(changes));
}

void SimulatedVolume::setName(NodeID folder, const std::string& name, NodeID node) {
    apply({{folder, name, node}});
}

void SimulatedVolume::removeName(NodeID folder, const std::string& name) {
    apply({{folder, name, std::nullopt}});
}

void SimulatedVolume::moveName(NodeID from, const std::string& fromName, NodeID to, const std::string& toName) {
    const auto node = find(from, fromName);
    apply({{from, fromName, std::nullopt}, {to, toName, node}});
}

std::size_t SimulatedVolume::usedBytes() const {
    std::size_t size = 0;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (linkCount(static_cast<NodeID>(i)) > 0)
            size += nodes_[i].bytes.size();
    }
    return size;
}

void SimulatedVolume::synchronizeData(NodeID node) {
    Node& synchronized = at(node);
    synchronized.safeBytes = synchronized.bytes;
    synchronized.dataChanges.clear();
}

void SimulatedVolume::keepNames(const NameChanges& changes) {
    for (const NameChange& change : changes) {
        auto& names = at(change.folder).safeNames;
        if (change.node)
            names[change.name] = *change.node;
        else
            names.erase(change.name);
    }
}

void SimulatedVolume::synchronize(NodeID node) {
    synchronizeData(node);
    at(node).safeAttributes = at(node).attributes;
    if (at(node).kind != Kind::folder)
        return;
    std::vector<NameChanges> left;
    for (NameChanges& changes : nameChanges_) {
        if (std::ranges::none_of(changes, [&](const NameChange& each) { return each.folder == node; })) {
            left.push_back(std::move(changes));
            continue;
        }
        keepNames(changes);
        // What came before it, in the other folder of a rename, must not come back.
        for (const NameChange& change : changes) {
            for (NameChanges& earlier : left)
                std::erase_if(earlier, [&](const NameChange& each) { return each.isSameName(change); });
        }
    }
    nameChanges_ = std::move(left);
}

void SimulatedVolume::synchronizeAll() {
    for (std::size_t i = 0; i < nodes_.size(); ++i)
        synchronize(static_cast<NodeID>(i));
}

std::string SimulatedVolume::bytesAfterPowerLoss(const Node& file, std::mt19937& random) const {
    if (file.dataChanges.empty())
        return file.safeBytes;
    // How far the writing had come, with the last change in part.
    std::string reached = file.safeBytes;
    const std::size_t count = anyUpTo(file.dataChanges.size(), random);
    for (std::size_t i = 0; i < count; ++i) {
        DataChange change = file.dataChanges[i];
        if (i + 1 == count && change.bytes && anyBool(random))
            change.bytes->resize(anyUpTo(change.bytes->size(), random));
        apply(change, reached);
    }
    if (anyBool(random))
        return reached;
    // Or only some of the sectors until then.
    std::string former = file.safeBytes;
    former.resize(reached.size());
    for (std::size_t begin = 0; begin < reached.size(); begin += sectorSize) {
        const std::size_t length = std::min(sectorSize, reached.size() - begin);
        if (anyBool(random))
            reached.replace(begin, length, former, begin, length);
    }
    return reached;
}

SimulatedVolume SimulatedVolume::afterPowerLoss(std::uint32_t seed) const {
    std::mt19937 random(seed);
    SimulatedVolume left = *this;
    // All changes up to one of them, or any.
    const bool isOrdered = anyBool(random);
    const std::size_t count = isOrdered ? anyUpTo(nameChanges_.size(), random) : nameChanges_.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (isOrdered || anyBool(random))
            left.keepNames(nameChanges_[i]);
    }
    left.nameChanges_.clear();
    for (Node& node : left.nodes_) {
        if (node.kind == Kind::file)
            node.safeBytes = bytesAfterPowerLoss(node, random);
        if (anyBool(random))
            node.safeAttributes = node.attributes;
        node.bytes = node.safeBytes;
        node.dataChanges.clear();
        node.attributes = node.safeAttributes;
        node.names = node.safeNames;
    }
    return left;
}

} // namespace quelm::test
