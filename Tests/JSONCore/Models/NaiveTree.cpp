#include "Tests/JSONCore/Models/NaiveTree.h"

#include "JSONCore/JSONScalar.h"
#include "TextCore/CanonicalText.h"

#include <algorithm>
#include <ranges>
#include <unordered_set>

namespace quelm::test {

namespace {

std::string canonicalForm(std::string_view text) {
    std::string storage;
    return std::string(canonical::form(text, storage));
}

bool isLetterOrSign(char character) {
    return character == '_' || character == '$' || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z');
}

bool isIdentifierLike(std::string_view key) {
    if (key.empty() || !isLetterOrSign(key.front()))
        return false;
    return std::all_of(key.begin(), key.end(), [](char character) {
        return isLetterOrSign(character) || (character >= '0' && character <= '9');
    });
}

std::string bracketed(std::string_view key) {
    std::string result = "[\"";
    for (const char character : key) {
        if (character == '\\' || character == '"')
            result += '\\';
        result += character;
    }
    return result + "\"]";
}

} // namespace

NaiveTree::NaiveTree() : nodes_{NaiveNode{NodeKind::array, {}, {}, {}, std::nullopt}} {}

NaiveTree::NaiveTree(NodeKind kind, std::string_view scalar) : NaiveTree() {
    attach(addNode(kind, {}, scalar), JSONTree::holder, 0);
}

std::int64_t NaiveTree::nodeCount() const {
    return subtreeSize(JSONTree::holder) - 1;
}

std::int64_t NaiveTree::subtreeSize(NodeID id) const {
    std::vector<NodeID> pending{id};
    std::int64_t size = 0;
    while (!pending.empty()) {
        const NaiveNode& current = (*this)[pending.back()];
        pending.pop_back();
        pending.insert(pending.end(), current.children.begin(), current.children.end());
        ++size;
    }
    return size;
}

std::optional<std::int64_t> NaiveTree::indexInParent(NodeID id) const {
    const auto parent = (*this)[id].parent;
    if (!parent)
        return std::nullopt;
    const auto& siblings = (*this)[*parent].children;
    return std::find(siblings.begin(), siblings.end(), id) - siblings.begin();
}

bool NaiveTree::isInSubtree(NodeID id, NodeID top) const {
    for (std::optional<NodeID> at = id; at; at = (*this)[*at].parent) {
        if (*at == top)
            return true;
    }
    return false;
}

std::string NaiveTree::path(NodeID id) const {
    std::vector<std::string> components;
    for (auto parent = (*this)[id].parent; parent && *parent != JSONTree::holder; parent = (*this)[id].parent) {
        if ((*this)[*parent].kind == NodeKind::array)
            components.push_back("[" + std::to_string(*indexInParent(id)) + "]");
        else if (isIdentifierLike((*this)[id].key))
            components.push_back("." + (*this)[id].key);
        else
            components.push_back(bracketed((*this)[id].key));
        id = *parent;
    }
    std::string result = "$";
    for (const std::string& component : std::views::reverse(components))
        result += component;
    return result;
}

std::int64_t NaiveTree::keyOccurrences(NodeID parent, std::string_view key) const {
    const std::string form = canonicalForm(key);
    const auto& members = (*this)[parent].children;
    return std::count_if(members.begin(), members.end(),
                         [&](NodeID member) { return canonicalForm((*this)[member].key) == form; });
}

std::string NaiveTree::uniqueKey(std::string_view base, NodeID parent) const {
    std::unordered_set<std::string> taken;
    for (const NodeID member : (*this)[parent].children)
        taken.insert(canonicalForm((*this)[member].key));
    std::string key(base);
    for (int number = 2; taken.contains(canonicalForm(key)); ++number)
        key = std::string(base) + " " + std::to_string(number);
    return key;
}

NodeID NaiveTree::addNode(NodeKind kind, std::string_view key, std::string_view scalar) {
    nodes_.push_back(NaiveNode{kind, std::string(key), std::string(scalar), {}, std::nullopt});
    return NodeID{static_cast<std::int32_t>(nodes_.size() - 1)};
}

void NaiveTree::attach(NodeID id, NodeID parent, std::int64_t index) {
    node(id).parent = parent;
    auto& siblings = node(parent).children;
    siblings.insert(siblings.begin() + index, id);
}

std::optional<JSONTree::Position> NaiveTree::detach(NodeID id) {
    const auto index = indexInParent(id);
    if (!index)
        return std::nullopt;
    const NodeID parent = *node(id).parent;
    auto& siblings = node(parent).children;
    siblings.erase(siblings.begin() + *index);
    node(id).parent = std::nullopt;
    return JSONTree::Position{parent, *index};
}

TreeEdit NaiveTree::apply(const TreeEdit& edit) {
    if (const auto* setKey = edit.asSetKey()) {
        const std::string previous = node(setKey->id).key;
        node(setKey->id).key = setKey->key.view();
        return TreeEdit::setKey(setKey->id, previous);
    }
    if (const auto* setValue = edit.asSetValue()) {
        NaiveNode& changed = node(setValue->id);
        const TreeEdit inverse = TreeEdit::setValue(setValue->id, changed.kind, changed.scalar);
        changed.kind = setValue->kind;
        changed.scalar = setValue->text.view();
        return inverse;
    }
    if (const auto* insert = edit.asInsert()) {
        attach(insert->id, insert->parent, insert->at);
        return TreeEdit::remove(insert->id);
    }
    const JSONTree::Position former = *detach(edit.id());
    return TreeEdit::insert(edit.id(), former.parent, former.index);
}

std::vector<TreeEdit> NaiveTree::apply(std::span<const TreeEdit> edits) {
    std::vector<TreeEdit> inverses;
    for (const TreeEdit& edit : edits)
        inverses.push_back(apply(edit));
    return {inverses.rbegin(), inverses.rend()};
}

std::optional<JSONTree::Position> NaiveTree::placeOfMovable(NodeID id) const {
    const auto parent = (*this)[id].parent;
    if (!parent || *parent == JSONTree::holder)
        return std::nullopt;
    return JSONTree::Position{*parent, *indexInParent(id)};
}

std::optional<JSONTree::Position> NaiveTree::placeAfter(NodeID id) const {
    auto position = placeOfMovable(id);
    if (position)
        ++position->index;
    return position;
}

std::optional<TreeChange> NaiveTree::place(NodeID added, std::string_view keyStem, NodeID target, bool inside) {
    std::optional<JSONTree::Position> position;
    if ((inside || target == root()) && isContainer((*this)[target].kind))
        position = {target, static_cast<std::int64_t>((*this)[target].children.size())};
    else
        position = placeAfter(target);
    if (!position)
        return std::nullopt;
    if ((*this)[position->parent].kind == NodeKind::object)
        node(added).key = uniqueKey(keyStem, position->parent);
    return TreeChange{{TreeEdit::insert(added, position->parent, position->index)}, added};
}

std::optional<TreeChange> NaiveTree::insertChange(NodeID target, bool inside) {
    return place(addNode(NodeKind::string, {}, {}), "clave", target, inside);
}

std::optional<TreeChange> NaiveTree::pasteChange(const NaiveTree& pasted, NodeID target, bool inside) {
    return place(appendDetached(pasted), "pegado", target, inside);
}

std::optional<TreeChange> NaiveTree::duplicateChange(NodeID id) {
    const auto position = placeOfMovable(id);
    if (!position)
        return std::nullopt;
    const NodeID copy = appendDetached(subtree(id));
    if ((*this)[position->parent].kind == NodeKind::object)
        node(copy).key = uniqueKey((*this)[id].key + " copia", position->parent);
    return TreeChange{{TreeEdit::insert(copy, position->parent, position->index + 1)}, copy};
}

std::optional<TreeChange> NaiveTree::kindChange(NodeID id, NodeKind kind) {
    const NaiveNode old = (*this)[id];
    if (old.kind == kind)
        return std::nullopt;
    const std::string converted = JSONScalar::convert(old.scalar, old.kind, kind);
    if (!isContainer(old.kind) && !isContainer(kind))
        return TreeChange{{TreeEdit::setValue(id, kind, converted)}, id};
    const auto index = indexInParent(id);
    if (!index)
        return std::nullopt;
    const NodeID fresh = addNode(kind, old.key, converted);
    return TreeChange{{TreeEdit::remove(id), TreeEdit::insert(fresh, *old.parent, *index)}, fresh};
}

std::optional<TreeChange> NaiveTree::moveChange(NodeID id, std::int64_t offset) const {
    const auto position = placeOfMovable(id);
    if (!position || offset == 0)
        return std::nullopt;
    const auto last = static_cast<std::int64_t>((*this)[position->parent].children.size()) - 1;
    if (offset < -position->index || offset > last - position->index)
        return std::nullopt;
    return TreeChange{{TreeEdit::remove(id), TreeEdit::insert(id, position->parent, position->index + offset)}, id};
}

std::optional<TreeChange> NaiveTree::removeChange(NodeID id) const {
    const auto position = placeOfMovable(id);
    if (!position)
        return std::nullopt;
    const auto& siblings = (*this)[position->parent].children;
    const auto index = static_cast<std::size_t>(position->index);
    NodeID focus = position->parent;
    if (index + 1 < siblings.size())
        focus = siblings[index + 1];
    else if (index >= 1)
        focus = siblings[index - 1];
    return TreeChange{{TreeEdit::remove(id)}, focus};
}

NodeID NaiveTree::copySubtree(const NaiveTree& source, NodeID top, std::optional<NodeID> parent) {
    struct Pending {
        NodeID from;
        std::optional<NodeID> parent;
    };
    const NodeID first{static_cast<std::int32_t>(nodes_.size())};
    std::vector<Pending> pending{{top, parent}};
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        const NodeID copy = addNode(source[from].kind, source[from].key, source[from].scalar);
        node(copy).parent = to;
        if (to)
            node(*to).children.push_back(copy);
        const auto& children = source[from].children;
        for (const NodeID child : std::views::reverse(children))
            pending.push_back({child, copy});
    }
    return first;
}

NaiveTree NaiveTree::subtree(NodeID id) const {
    NaiveTree copy;
    copy.copySubtree(*this, id, JSONTree::holder);
    return copy;
}

NodeID NaiveTree::appendDetached(const NaiveTree& other) {
    return copySubtree(other, other.root(), std::nullopt);
}

} // namespace quelm::test
