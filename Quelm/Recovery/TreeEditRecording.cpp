#include "Quelm/Recovery/TreeEditRecording.h"

#include "JSONCore/JSONSerializer.h"
#include "JSONCore/JSONStyle.h"

#include <algorithm>
#include <cstddef>

namespace quelm {

namespace {

/// Subtrees up to here are written at once: a copy of the tree would make the edits that follow copy parts of it.
constexpr std::int64_t mostNodes = 1000;
constexpr std::size_t mostBytes = 65'536;

bool isSmall(const JSONTree& tree, NodeID top) {
    if (tree.subtreeSize(top) > mostNodes)
        return false;
    std::size_t bytes = 0;
    std::vector<NodeID> pending{top};
    while (!pending.empty() && bytes <= mostBytes) {
        const NodeID node = pending.back();
        pending.pop_back();
        bytes += tree.key(node).size() + tree.scalar(node).size();
        for (const NodeID child : tree.children(node))
            pending.push_back(child);
    }
    return bytes <= mostBytes;
}

journal::InsertNew newSubtree(journal::NodePath parent, std::int64_t index, const JSONTree& tree, NodeID node) {
    return {.parent = std::move(parent),
            .index = index,
            .key = tree.sharedKey(node),
            .json = JSONSerializer::serialize(tree, node, JSONStyle::compact())};
}

} // namespace

journal::EditTree encodedEdits(const std::vector<PendingNodeEdit>& edits) {
    journal::EditTree record;
    record.edits.reserve(edits.size());
    for (const PendingNodeEdit& edit : edits) {
        if (const auto* pending = std::get_if<PendingInsert>(&edit))
            record.edits.emplace_back(newSubtree(pending->parent, pending->index, pending->tree, pending->node));
        else
            record.edits.push_back(std::get<journal::NodeEdit>(edit));
    }
    return record;
}

void TreeEditRecording::add(const JSONTree& tree, const TreeEdit& edit, std::int64_t content) {
    if (const auto* insert = edit.asInsert())
        return addInsert(tree, *insert, content);
    const NodeID node = edit.id();
    std::optional<journal::NodePath> path = pathOf(tree, node, content);
    if (!path)
        return;
    if (const auto* setKey = edit.asSetKey())
        edits_.emplace_back(journal::SetKey{.node = *std::move(path), .key = setKey->key});
    else if (const auto* setValue = edit.asSetValue())
        edits_.emplace_back(
            journal::SetValue{.node = *std::move(path), .kind = setValue->kind, .text = setValue->text});
    else
        edits_.emplace_back(journal::Remove{.node = *std::move(path), .number = numbers_.add(content, node)});
}

void TreeEditRecording::addInsert(const JSONTree& tree, const TreeEdit::Insert& insert, std::int64_t content) {
    const std::optional<std::int64_t> number = numbers_.take(content, insert.id);
    std::optional<journal::NodePath> parent = pathOf(tree, insert.parent, content);
    if (!parent)
        return;
    if (number)
        edits_.emplace_back(
            journal::InsertDetached{.parent = *std::move(parent), .index = insert.at, .number = *number});
    else if (isSmall(tree, insert.id))
        edits_.emplace_back(newSubtree(*std::move(parent), insert.at, tree, insert.id));
    else
        edits_.emplace_back(
            PendingInsert{.parent = *std::move(parent), .index = insert.at, .tree = tree, .node = insert.id});
}

/// Absent when the node is in a detached subtree. What is edited there is not told of: the subtree is written anew when
/// it comes back.
std::optional<journal::NodePath> TreeEditRecording::pathOf(const JSONTree& tree, NodeID node, std::int64_t content) {
    journal::NodePath path;
    while (node != JSONTree::holder) {
        const std::optional<std::int64_t> index = tree.indexInParent(node);
        if (!index) {
            numbers_.forget(content, node);
            return std::nullopt;
        }
        path.push_back(static_cast<std::uint32_t>(*index));
        node = *tree.parent(node);
    }
    std::ranges::reverse(path);
    return path;
}

std::vector<PendingNodeEdit> TreeEditRecording::take() {
    numbers_.settle();
    return std::exchange(edits_, {});
}

void TreeEditRecording::drop() {
    numbers_.rollBack();
    edits_.clear();
}

} // namespace quelm
