#include "Quelm/Recovery/TreeEditReplay.h"

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONScalar.h"
#include "TextCore/UTF8.h"

#include <optional>
#include <utility>

namespace quelm {

namespace {

using Repeated = std::expected<void, ReplayError>;

Repeated impossible() {
    return std::unexpected(ReplayError::impossible);
}

/// One edit after the other; each looks first whether the tree can take it, since a tree takes nothing else.
class TreeEditReplay {
public:
    TreeEditReplay(JSONTree& tree, DetachedNodes& detached, const std::stop_token& stop)
        : tree_(tree), detached_(detached), stop_(stop) {}

    Repeated operator()(const journal::SetKey& edit) {
        const std::optional<NodeID> node = valueAt(edit.node);
        if (!node || !utf8::isValid(edit.key.view()))
            return impossible();
        tree_.apply(TreeEdit::setKey(*node, edit.key));
        return {};
    }

    Repeated operator()(const journal::SetValue& edit) {
        const std::optional<NodeID> node = valueAt(edit.node);
        if (!node || isContainer(tree_.kind(*node)) || isContainer(edit.kind) || !utf8::isValid(edit.text.view()) ||
            !JSONScalar::isValid(edit.text.view(), edit.kind))
            return impossible();
        tree_.apply(TreeEdit::setValue(*node, edit.kind, edit.text));
        return {};
    }

    Repeated operator()(const journal::Remove& edit) {
        const std::optional<NodeID> node = valueAt(edit.node);
        if (!node || detached_.contains(edit.number))
            return impossible();
        tree_.apply(TreeEdit::remove(*node));
        detached_.emplace(edit.number, *node);
        return {};
    }

    Repeated operator()(const journal::InsertDetached& edit) {
        const std::optional<NodeID> parent = parentAt(edit.parent, edit.index);
        const auto found = detached_.find(edit.number);
        if (!parent || found == detached_.end())
            return impossible();
        tree_.apply(TreeEdit::insert(found->second, *parent, edit.index));
        detached_.erase(found);
        return {};
    }

    Repeated operator()(const journal::InsertNew& edit) {
        const std::optional<NodeID> parent = parentAt(edit.parent, edit.index);
        if (!parent || !utf8::isValid(edit.key.view()) || !utf8::isValid(edit.json.view()))
            return impossible();
        const auto value = JSONParser::parse(TextRope(edit.json), stop_);
        if (!value)
            return std::unexpected(value.error() == JSONParseError::cancelled() ? ReplayError::cancelled
                                                                                : ReplayError::impossible);
        const NodeID node = tree_.appendDetached(*value);
        tree_.apply(TreeEdit::setKey(node, edit.key));
        tree_.apply(TreeEdit::insert(node, *parent, edit.index));
        return {};
    }

private:
    std::optional<NodeID> nodeAt(const journal::NodePath& path) const {
        NodeID node = JSONTree::holder;
        for (const std::uint32_t index : path) {
            const ChildList children = tree_.children(node);
            if (index >= children.size())
                return std::nullopt;
            node = children[index];
        }
        return node;
    }

    /// Any node but the holder, which is no value.
    std::optional<NodeID> valueAt(const journal::NodePath& path) const {
        return path.empty() ? std::nullopt : nodeAt(path);
    }

    /// A container that can take a child at that index.
    std::optional<NodeID> parentAt(const journal::NodePath& path, std::int64_t index) const {
        const std::optional<NodeID> parent = nodeAt(path);
        if (!parent || !isContainer(tree_.kind(*parent)) || index < 0 || index > tree_.children(*parent).size())
            return std::nullopt;
        // The holder has one child at most.
        return path.empty() && !tree_.children(*parent).empty() ? std::nullopt : parent;
    }

    JSONTree& tree_;
    DetachedNodes& detached_;
    const std::stop_token& stop_;
};

} // namespace

std::expected<JSONTree, ReplayError> repeatTreeEdits(JSONTree tree, const journal::EditTree& edits,
                                                     DetachedNodes& detached, const std::stop_token& stop) {
    TreeEditReplay replay(tree, detached, stop);
    for (const journal::NodeEdit& edit : edits.edits)
        if (Repeated repeated = std::visit(replay, edit); !repeated)
            return std::unexpected(repeated.error());
    if (tree.children(JSONTree::holder).empty())
        return std::unexpected(ReplayError::impossible);
    return tree;
}

} // namespace quelm
