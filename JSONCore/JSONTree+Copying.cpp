// Copies of subtrees, within one store and from one to another.

#include "JSONCore/JSONTree.h"
#include "JSONCore/Storage/TreeBuilder.h"
#include "JSONCore/Storage/TreeStorage.h"

#include <vector>

namespace quelm {

namespace {

/// Takes texts over from one storage to another: where both share the memory, as they are.
class TextCopier {
public:
    TextCopier(const TreeStorage& from, TreeStorage& to)
        : from_(from), to_(to), isSourceShared_(from.source.isSamePiece(to.source)) {}

    TextRef operator()(TextRef ref) {
        if (ref.length == 0)
            return {};
        const bool isShared = ref.isInArena ? from_.arena.sharesTextAt(ref.offset, to_.arena) : isSourceShared_;
        return isShared ? ref : to_.store(from_.text(ref));
    }

private:
    const TreeStorage& from_;
    TreeStorage& to_;
    bool isSourceShared_;
};

/// Appends a copy of the subtree at `top`, detached. `from` must not be the storage appended to.
NodeID appendCopy(const TreeStorage& from, NodeID top, TreeStorage& to) {
    TextCopier copyText(from, to);
    TreeBuilder builder(to);
    struct Frame {
        ChildList::Iterator next;
        ChildList::Iterator end;
    };
    std::vector<Frame> open;
    const auto copy = [&](NodeID id) {
        const NodeRecord& record = from.record(id);
        const TextRef key = copyText(record.key());
        if (!isContainer(record.kind)) {
            builder.addScalar(record.kind, key, copyText(record.scalar()));
            return;
        }
        builder.open(record.kind, key);
        const ChildList children = from.children(record);
        open.push_back({children.begin(), children.end()});
    };
    copy(top);
    while (!open.empty()) {
        Frame& frame = open.back();
        if (frame.next == frame.end) {
            builder.close();
            open.pop_back();
        } else {
            copy(*frame.next++);
        }
    }
    return builder.finish();
}

} // namespace

JSONTree JSONTree::subtree(NodeID id) const {
    requireStored(id);
    auto storage = std::make_shared<TreeStorage>(TreeStorage::withHolder());
    storage->source = this->storage().source;
    storage->arena = this->storage().arena;
    const NodeID top = appendCopy(this->storage(), id, *storage);
    JSONTree copy(std::move(storage));
    copy.attach(top, holder, 0);
    return copy;
}

NodeID JSONTree::appendDetached(const JSONTree& other) {
    // A copy of its own keeps the other tree as it is, should it be this very one.
    const JSONTree source = other;
    return appendCopy(source.storage(), source.root(), changeableStorage());
}

} // namespace quelm
