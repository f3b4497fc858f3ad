#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "TextCore/SharedText.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace quelm {

/// One primitive change of a `JSONTree`, applied by `JSONTree::apply`, which returns its inverse. An immutable value.
/// Equal edits are the same case with equal payloads, texts by canonical equivalence.
class TreeEdit {
public:
    struct SetKey {
        NodeID id;
        SharedText key;
        friend bool operator==(const SetKey& left, const SetKey& right);
    };
    struct SetValue {
        NodeID id;
        NodeKind kind;
        SharedText text;
        friend bool operator==(const SetValue& left, const SetValue& right);
    };
    struct Insert {
        NodeID id;
        NodeID parent;
        std::int64_t at;
        friend bool operator==(const Insert&, const Insert&) = default;
    };
    struct Remove {
        NodeID id;
        friend bool operator==(const Remove&, const Remove&) = default;
    };

    /// Gives the node a new key.
    static TreeEdit setKey(NodeID id, SharedText key) { return TreeEdit(SetKey{id, std::move(key)}); }
    static TreeEdit setKey(NodeID id, std::string_view key) { return setKey(id, SharedText(key)); }

    /// Gives a scalar node a new scalar kind and text.
    static TreeEdit setValue(NodeID id, NodeKind kind, SharedText text) {
        return TreeEdit(SetValue{id, kind, std::move(text)});
    }
    static TreeEdit setValue(NodeID id, NodeKind kind, std::string_view text) {
        return setValue(id, kind, SharedText(text));
    }

    /// Attaches a detached node as child number `at` of `parent`.
    static TreeEdit insert(NodeID id, NodeID parent, std::int64_t at) { return TreeEdit(Insert{id, parent, at}); }

    /// Detaches the node from its parent.
    static TreeEdit remove(NodeID id) { return TreeEdit(Remove{id}); }

    /// The payload when the edit is of that case, else null.
    const SetKey* asSetKey() const { return std::get_if<SetKey>(&case_); }
    const SetValue* asSetValue() const { return std::get_if<SetValue>(&case_); }
    const Insert* asInsert() const { return std::get_if<Insert>(&case_); }
    const Remove* asRemove() const { return std::get_if<Remove>(&case_); }

    /// The node that the edit is about.
    NodeID id() const;

    friend bool operator==(const TreeEdit&, const TreeEdit&) = default;

private:
    using Case = std::variant<SetKey, SetValue, Insert, Remove>;
    explicit TreeEdit(Case payload) : case_(std::move(payload)) {}

    Case case_;
};

/// What a user's intention comes to: edits to apply in order, and the node to select afterwards. Valid only for the
/// state of the tree that it was prepared on.
struct TreeChange {
    std::vector<TreeEdit> edits;
    std::optional<NodeID> focus;

    friend bool operator==(const TreeChange&, const TreeChange&) = default;
};

} // namespace quelm
