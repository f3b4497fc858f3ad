#include "Tests/JSONCore/Models/NaiveOutline.h"

#include "TextCore/CanonicalText.h"
#include "TextCore/Graphemes.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace quelm::test {

namespace {

std::string canonicalForm(std::string_view text) {
    std::string storage;
    return std::string(canonical::form(text, storage));
}

std::string shownValue(const NaiveNode& node) {
    if (isContainer(node.kind))
        return "";
    if (node.kind == NodeKind::null)
        return "null";
    if (node.scalar.size() <= 200)
        return node.scalar;
    return std::string(graphemes::prefix(node.scalar, 200)) + "…";
}

/// The keys, in canonical form, that several members of an object have.
std::unordered_set<std::string> duplicateKeys(const NaiveNode& object, const NaiveTree& tree) {
    std::unordered_set<std::string> seen;
    std::unordered_set<std::string> duplicates;
    for (const NodeID member : object.children) {
        const std::string form = canonicalForm(tree[member].key);
        if (!seen.insert(form).second)
            duplicates.insert(form);
    }
    return duplicates;
}

/// Whether new keys of a node, old ones beside them, change the mark of another member.
bool renameChangesOthers(NodeID id, const std::set<std::string>& keys, const NaiveTree& tree) {
    const NodeID parent = *tree[id].parent;
    if (tree[parent].kind != NodeKind::object)
        return false;
    return std::any_of(keys.begin(), keys.end(), [&](const std::string& key) {
        const bool isCurrent = canonicalForm(tree[id].key) == key;
        return tree.keyOccurrences(parent, key) == (isCurrent ? 2 : 1);
    });
}

} // namespace

std::optional<std::int64_t> NaiveOutline::index(NodeID id) const {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i].id == id)
            return static_cast<std::int64_t>(i);
    }
    return std::nullopt;
}

std::vector<TreeRow> NaiveOutline::buildRows(NodeID id, std::int64_t depth, const TreeRow::Label& label,
                                             bool isDuplicateKey, const NaiveTree& tree) const {
    struct Pending {
        NodeID id;
        std::int64_t depth;
        TreeRow::Label label;
        bool isDuplicateKey;
    };
    std::vector<Pending> stack{{id, depth, label, isDuplicateKey}};
    std::vector<TreeRow> rows;
    while (!stack.empty()) {
        const Pending next = std::move(stack.back());
        stack.pop_back();
        const NaiveNode& node = tree[next.id];
        const bool isExpanded = isContainer(node.kind) && expanded_.contains(next.id);
        rows.push_back({next.id, next.depth, next.label, node.kind, shownValue(node),
                        static_cast<std::int64_t>(node.children.size()), isExpanded, next.isDuplicateKey});
        if (!isExpanded)
            continue;
        const bool isObject = node.kind == NodeKind::object;
        const auto duplicates = isObject ? duplicateKeys(node, tree) : std::unordered_set<std::string>();
        for (std::size_t i = node.children.size(); i-- > 0;) {
            const NodeID child = node.children[i];
            const std::string& key = tree[child].key;
            if (isObject)
                stack.push_back(
                    {child, next.depth + 1, TreeRow::Label::key(key), duplicates.contains(canonicalForm(key))});
            else
                stack.push_back({child, next.depth + 1, TreeRow::Label::index(static_cast<std::int64_t>(i)), false});
        }
    }
    return rows;
}

void NaiveOutline::rebuild(const NaiveTree& tree) {
    expanded_.insert(tree.root());
    makeRowsAnew(tree);
}

void NaiveOutline::makeRowsAnew(const NaiveTree& tree) {
    rows_ = buildRows(tree.root(), 0, TreeRow::Label::root(), false, tree);
}

void NaiveOutline::refresh(NodeID id, const NaiveTree& tree) {
    if (id == JSONTree::holder)
        return rebuild(tree);
    const auto position = index(id);
    if (!position)
        return;
    const auto first = rows_.begin() + *position;
    const TreeRow& old = *first;
    const auto last = std::find_if(first + 1, rows_.end(), [&](const TreeRow& row) { return row.depth <= old.depth; });
    const auto parent = tree[id].parent;
    std::vector<TreeRow> fresh;
    if (parent && old.label.asKey() && tree[*parent].kind == NodeKind::object) {
        const std::string& key = tree[id].key;
        fresh = buildRows(id, old.depth, TreeRow::Label::key(key), tree.keyOccurrences(*parent, key) > 1, tree);
    } else if (parent) {
        fresh = buildRows(id, old.depth, old.label, old.isDuplicateKey, tree);
    }
    rows_.insert(rows_.erase(first, last), fresh.begin(), fresh.end());
}

void NaiveOutline::setExpanded(NodeID id, bool isExpanded, bool recursive, const NaiveTree& tree) {
    if (!isContainer(tree[id].kind))
        return;
    std::vector<NodeID> stack{id};
    while (!stack.empty()) {
        const NodeID next = stack.back();
        stack.pop_back();
        if (isExpanded)
            expanded_.insert(next);
        else
            expanded_.erase(next);
        for (const NodeID child : tree[next].children) {
            if (recursive && isContainer(tree[child].kind))
                stack.push_back(child);
        }
    }
    refresh(id, tree);
}

void NaiveOutline::reveal(NodeID id, const NaiveTree& tree) {
    std::optional<NodeID> highestAdded;
    for (auto at = tree[id].parent; at && *at != JSONTree::holder; at = tree[*at].parent) {
        if (expanded_.insert(*at).second)
            highestAdded = at;
    }
    if (highestAdded)
        refresh(tree[*highestAdded].parent.value_or(*highestAdded), tree);
}

void NaiveOutline::update(std::span<const TreeEdit> edits, const NaiveTree& tree) {
    std::vector<NodeID> toRefresh;
    std::map<NodeID, std::set<std::string>> keys;
    std::vector<NodeID> renamed;
    const auto collect = [&](NodeID id) {
        if (std::find(toRefresh.begin(), toRefresh.end(), id) == toRefresh.end())
            toRefresh.push_back(id);
    };
    for (const TreeEdit& edit : edits) {
        if (const auto* setKey = edit.asSetKey()) {
            if (keys[setKey->id].empty())
                renamed.push_back(setKey->id);
            keys[setKey->id].insert(canonicalForm(setKey->key.view()));
        } else if (const auto* setValue = edit.asSetValue()) {
            collect(setValue->id);
        } else if (const auto* insert = edit.asInsert()) {
            collect(insert->parent);
        }
    }
    for (const NodeID id : renamed) {
        const auto parent = tree[id].parent;
        collect(parent && renameChangesOthers(id, keys[id], tree) ? *parent : id);
    }
    for (const NodeID id : toRefresh)
        refresh(id, tree);
}

} // namespace quelm::test
