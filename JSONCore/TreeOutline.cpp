#include "JSONCore/TreeOutline.h"

#include "JSONCore/OutlineRowBuilder.h"
#include "TextCore/Check.h"

#include <algorithm>

namespace quelm {

namespace {

TreeRow::Label labelOf(NodeID id, NodeID parent, std::string_view key, const JSONTree& tree) {
    if (parent == JSONTree::holder)
        return TreeRow::Label::root();
    if (tree.kind(parent) == NodeKind::object)
        return TreeRow::Label::key(std::string(key));
    return TreeRow::Label::index(tree.indexInParent(id).value_or(0));
}

NodeID parentOf(NodeID id, const JSONTree& tree) {
    return tree.parent(id).value_or(JSONTree::holder);
}

bool isDuplicate(NodeID id, NodeID parent, const JSONTree& tree) {
    return tree.kind(parent) == NodeKind::object && tree.keyOccurrences(parent, tree.key(id)) > 1;
}

/// What a row has of a scalar, told the function that shortens its text.
std::string valueText(NodeID id, const JSONTree& tree, std::string (*shortened)(std::string_view)) {
    const NodeKind kind = tree.kind(id);
    if (isContainer(kind))
        return {};
    return kind == NodeKind::null ? "null" : shortened(tree.scalar(id));
}

} // namespace

TreeRow TreeOutline::row(std::int64_t index, const JSONTree& tree) const {
    TreeRow row = rowWithoutTexts(index, tree);
    row.label = labelOf(row.id, parentOf(row.id, tree), tree.key(row.id), tree);
    row.value = valueText(row.id, tree, TreeRow::displayText);
    return row;
}

TreeRow TreeOutline::previewRow(std::int64_t index, const JSONTree& tree) const {
    TreeRow row = rowWithoutTexts(index, tree);
    row.label = labelOf(row.id, parentOf(row.id, tree), TreeRow::previewKey(tree.key(row.id)), tree);
    row.value = valueText(row.id, tree, TreeRow::previewText);
    return row;
}

TreeRow TreeOutline::rowWithoutTexts(std::int64_t index, const JSONTree& tree) const {
    const OutlineRow& stored = rows_[index];
    const NodeKind kind = tree.kind(stored.id);
    return {.id = stored.id,
            .depth = stored.depth,
            .kind = kind,
            .value = {},
            .childCount = tree.children(stored.id).size(),
            .isExpanded = isContainer(kind) && expanded_.contains(stored.id),
            .isDuplicateKey = isDuplicate(stored.id, parentOf(stored.id, tree), tree)};
}

std::vector<TreeRow> TreeOutline::buildRows(NodeID id, std::int64_t depth, const TreeRow::Label& label,
                                            bool isDuplicateKey, const JSONTree& tree) const {
    TreeOutline part;
    part.expanded_ = expanded_;
    part.rows_.replace(0, 0, visibleRows(id, static_cast<std::uint32_t>(depth), expanded_, tree));
    std::vector<TreeRow> rows;
    rows.reserve(static_cast<std::size_t>(part.rowCount()));
    for (std::int64_t index = 0; index < part.rowCount(); ++index)
        rows.push_back(part.row(index, tree));
    rows.front().label = label;
    rows.front().isDuplicateKey = isDuplicateKey;
    return rows;
}

void TreeOutline::rebuild(const JSONTree& tree) {
    const NodeID root = tree.root();
    expanded_.insert(root);
    rows_.replace(0, rows_.size(), visibleRows(root, 0, expanded_, tree));
}

void TreeOutline::refresh(NodeID id, const JSONTree& tree) {
    if (id == JSONTree::holder) {
        rebuild(tree);
        return;
    }
    const auto first = rows_.indexOf(id);
    const bool isAttached = tree.parent(id).has_value();
    if (!first)
        return;
    const std::int64_t count = rows_.stretchEnd(*first) - *first;
    if (isAttached)
        rows_.replace(*first, count, visibleRows(id, rows_[*first].depth, expanded_, tree));
    else
        rows_.replace(*first, count, {});
}

void TreeOutline::setExpanded(NodeID id, bool isExpanded, bool recursive, const JSONTree& tree) {
    if (!isContainer(tree.kind(id)))
        return;
    std::vector<NodeID> pending{id};
    while (!pending.empty()) {
        const NodeID node = pending.back();
        pending.pop_back();
        if (isExpanded)
            expanded_.insert(node);
        else
            expanded_.remove(node);
        if (!recursive)
            break;
        for (NodeID child : tree.children(node)) {
            if (isContainer(tree.kind(child)))
                pending.push_back(child);
        }
    }
    refresh(id, tree);
}

void TreeOutline::reveal(NodeID id, const JSONTree& tree) {
    std::optional<NodeID> highest;
    for (auto ancestor = tree.parent(id); ancestor && *ancestor != JSONTree::holder;
         ancestor = tree.parent(*ancestor)) {
        if (expanded_.insert(*ancestor))
            highest = ancestor;
    }
    if (highest)
        refresh(tree.parent(*highest).value_or(*highest), tree);
}

} // namespace quelm
