#include "JSONCore/OutlineRowBuilder.h"

#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/Check.h"

#include <array>
#include <vector>

namespace quelm {

namespace {

/// From this many members on, an object gets the index of its keys together with its rows. A smaller one gets it within
/// a fraction of a millisecond when the first of its rows is drawn, and many that are never seen would take memory.
constexpr std::int64_t indexedBeforeShown = 16'384;

/// Collects rows and hands them to the sequence many at a time.
class RowCollector {
public:
    void add(NodeID id, std::uint32_t depth) {
        if (count_ == buffer_.size())
            flush();
        buffer_[count_++] = {id, depth};
    }
    OutlineRows::Sequence take() {
        flush();
        return std::move(rows_);
    }

private:
    void flush() {
        rows_.append({buffer_.data(), count_});
        count_ = 0;
    }

    std::array<OutlineRow, 1024> buffer_;
    std::size_t count_ = 0;
    OutlineRows::Sequence rows_;
};

} // namespace

OutlineRows::Sequence visibleRows(NodeID id, std::uint32_t depth, const NodeSet& expanded, const JSONTree& tree) {
    struct Open {
        ChildList::Iterator next;
        ChildList::Iterator end;
    };
    const TreeStorage& storage = storageOf(tree);
    require(id.raw >= 0 && id.raw < tree.storedNodeCount(), "a node id is stored in the tree");
    RowCollector rows;
    std::vector<Open> open;
    const auto show = [&](NodeID node) {
        rows.add(node, depth + static_cast<std::uint32_t>(open.size()));
        const NodeRecord& record = storage.record(node);
        if (!isContainer(record.kind) || !expanded.contains(node))
            return;
        const ChildList children = storage.children(record);
        if (children.empty())
            return;
        if (record.kind == NodeKind::object && children.size() >= indexedBeforeShown)
            tree.prepareKeyIndex(node);
        open.push_back({children.begin(), children.end()});
    };
    show(id);
    while (!open.empty()) {
        if (open.back().next == open.back().end)
            open.pop_back();
        else
            show(*open.back().next++);
    }
    return rows.take();
}

} // namespace quelm
