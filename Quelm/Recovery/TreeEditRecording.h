#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/TreeEdit.h"
#include "Quelm/Recovery/DetachedNumbers.h"
#include "Quelm/Recovery/JournalRecord.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace quelm {

/// A new subtree that is still to be written as JSON: as large as it may be, and therefore not on the main thread.
struct PendingInsert {
    journal::NodePath parent;
    std::int64_t index = 0;
    JSONTree tree;
    NodeID node;
};

using PendingNodeEdit = std::variant<journal::NodeEdit, PendingInsert>;

/// The record of edits. O(size of the new subtrees); for any thread. Throws std::bad_alloc.
journal::EditTree encodedEdits(const std::vector<PendingNodeEdit>& edits);

/// Says for edits of a tree, in the state in which they are applied, what a journal says of them.
class TreeEditRecording {
public:
    explicit TreeEditRecording(DetachedNumbers& numbers) : numbers_(numbers) {}

    /// The edit is about to be applied to the tree of that content. O(depth), plus the siblings' lists on the way.
    void add(const JSONTree& tree, const TreeEdit& edit, std::int64_t content);

    bool isEmpty() const { return edits_.empty(); }

    /// The edits since the last call, which are applied.
    std::vector<PendingNodeEdit> take();
    /// They were taken back.
    void drop();

private:
    void addInsert(const JSONTree& tree, const TreeEdit::Insert& insert, std::int64_t content);
    std::optional<journal::NodePath> pathOf(const JSONTree& tree, NodeID node, std::int64_t content);

    DetachedNumbers& numbers_;
    std::vector<PendingNodeEdit> edits_;
};

} // namespace quelm
