// Edits with their inverses, and the changes that a user's intentions come to.

#include "JSONCore/JSONScalar.h"
#include "JSONCore/JSONTree.h"
#include "TextCore/Check.h"

#include <algorithm>

namespace quelm {

namespace {

constexpr std::string_view insertedKeyStem = "clave";
constexpr std::string_view pastedKeyStem = "pegado";
constexpr std::string_view copiedKeySuffix = " copia";

} // namespace

TreeEdit JSONTree::apply(const TreeEdit& edit) {
    const NodeID id = edit.id();
    if (const auto* setKey = edit.asSetKey()) {
        TreeEdit inverse = TreeEdit::setKey(id, sharedKey(id));
        this->setKey(id, setKey->key);
        return inverse;
    }
    if (const auto* setValue = edit.asSetValue()) {
        require(!isContainer(kind(id)) && !isContainer(setValue->kind), "setValue takes one scalar kind to another");
        TreeEdit inverse = TreeEdit::setValue(id, kind(id), sharedScalar(id));
        this->setValue(id, setValue->kind, setValue->text);
        return inverse;
    }
    if (const auto* insert = edit.asInsert()) {
        attach(id, insert->parent, insert->at);
        return TreeEdit::remove(id);
    }
    const auto position = detach(id);
    require(position.has_value(), "a removed node has a parent");
    return TreeEdit::insert(id, position->parent, position->index);
}

std::vector<TreeEdit> JSONTree::apply(std::span<const TreeEdit> edits) {
    return apply(edits, [](const JSONTree&, const TreeEdit&) {});
}

std::vector<TreeEdit> JSONTree::apply(std::span<const TreeEdit> edits, const WillApply& willApply) {
    std::vector<TreeEdit> inverses;
    inverses.reserve(edits.size());
    try {
        for (const TreeEdit& edit : edits) {
            willApply(*this, edit);
            inverses.push_back(apply(edit));
        }
    } catch (...) {
        for (auto inverse = inverses.rbegin(); inverse != inverses.rend(); ++inverse)
            apply(*inverse);
        throw;
    }
    std::ranges::reverse(inverses);
    return inverses;
}

std::optional<JSONTree::Position> JSONTree::positionBelowRoot(NodeID id) const {
    const auto container = parent(id);
    if (!container || *container == holder)
        return std::nullopt;
    const auto index = indexInParent(id);
    return index ? std::optional(Position{*container, *index}) : std::nullopt;
}

std::optional<TreeChange> JSONTree::place(NodeID node, std::string_view keyStem, NodeID target, bool inside) {
    std::optional<Position> position;
    if (target == holder)
        return std::nullopt;
    if ((inside || target == root()) && isContainer(kind(target))) {
        position = Position{target, children(target).size()};
    } else {
        position = positionBelowRoot(target);
        if (!position)
            return std::nullopt;
        ++position->index;
    }
    if (kind(position->parent) == NodeKind::object)
        setKey(node, SharedText(uniqueKey(keyStem, position->parent)));
    return TreeChange{{TreeEdit::insert(node, position->parent, position->index)}, node};
}

std::optional<TreeChange> JSONTree::insertChange(NodeID target, bool inside) {
    requireStored(target);
    return place(addNode(NodeKind::string, {}, {}), insertedKeyStem, target, inside);
}

std::optional<TreeChange> JSONTree::pasteChange(const JSONTree& pasted, NodeID target, bool inside) {
    requireStored(target);
    return place(appendDetached(pasted), pastedKeyStem, target, inside);
}

std::optional<TreeChange> JSONTree::kindChange(NodeID id, NodeKind kind) {
    const NodeKind before = this->kind(id);
    if (kind == before)
        return std::nullopt;
    const std::string text = JSONScalar::convert(scalar(id), before, kind);
    if (!isContainer(before) && !isContainer(kind))
        return TreeChange{{TreeEdit::setValue(id, kind, text)}, id};
    const auto index = indexInParent(id);
    if (!index)
        return std::nullopt;
    const NodeID fresh = addNode(kind, key(id), text);
    return TreeChange{{TreeEdit::remove(id), TreeEdit::insert(fresh, *parent(id), *index)}, fresh};
}

std::optional<TreeChange> JSONTree::moveChange(NodeID id, std::int64_t offset) {
    const auto position = positionBelowRoot(id);
    if (!position || offset == 0)
        return std::nullopt;
    const std::int64_t siblings = children(position->parent).size();
    if (offset < -position->index || offset >= siblings - position->index)
        return std::nullopt;
    return TreeChange{{TreeEdit::remove(id), TreeEdit::insert(id, position->parent, position->index + offset)}, id};
}

std::optional<TreeChange> JSONTree::removeChange(NodeID id) {
    const auto position = positionBelowRoot(id);
    if (!position)
        return std::nullopt;
    const ChildList siblings = children(position->parent);
    NodeID focus = position->parent;
    if (position->index + 1 < siblings.size())
        focus = siblings[position->index + 1];
    else if (position->index >= 1)
        focus = siblings[position->index - 1];
    return TreeChange{{TreeEdit::remove(id)}, focus};
}

std::optional<TreeChange> JSONTree::duplicateChange(NodeID id) {
    const auto position = positionBelowRoot(id);
    if (!position)
        return std::nullopt;
    const NodeID copy = appendDetached(subtree(id));
    if (kind(position->parent) == NodeKind::object) {
        const std::string stem = std::string(key(id)).append(copiedKeySuffix);
        setKey(copy, SharedText(uniqueKey(stem, position->parent)));
    }
    return TreeChange{{TreeEdit::insert(copy, position->parent, position->index + 1)}, copy};
}

} // namespace quelm
