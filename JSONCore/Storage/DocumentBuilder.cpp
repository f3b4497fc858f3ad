#include "JSONCore/Storage/DocumentBuilder.h"

#include "JSONCore/Storage/TreeStorage.h"

#include <utility>

namespace quelm {

namespace {

/// A guess: real files have 10 to 30 bytes a value when compact, more when indented. Memory that is not used costs
/// nothing.
constexpr std::size_t bytesPerNode = 16;

std::shared_ptr<TreeStorage> storageFor(SharedText source) {
    auto storage = std::make_shared<TreeStorage>(TreeStorage::withHolder());
    const std::size_t expectedNodes = source.size() / bytesPerNode + 2;
    storage->nodes.expect(expectedNodes);
    storage->lists.expect(expectedNodes + expectedNodes / 4);
    storage->source = std::move(source);
    return storage;
}

} // namespace

DocumentBuilder::DocumentBuilder(SharedText source) : storage_(storageFor(std::move(source))), values_(*storage_) {}

JSONTree DocumentBuilder::finish() {
    const NodeID top = values_.finish();
    storage_->nodes.endExpected();
    storage_->lists.endExpected();
    JSONTree tree(std::move(storage_));
    tree.attach(top, JSONTree::holder, 0);
    return tree;
}

} // namespace quelm
