#pragma once

#include "JSONCore/ChildList.h"
#include "JSONCore/KeyIndexCache.h"
#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "JSONCore/TreeEdit.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

class DocumentBuilder;
struct TreeStorage;

/// A JSON document as a flat store of values, each addressed by its `NodeID`.
///
/// Node 0 is the holder, an array whose only child is the document's top-level value; it is never shown nor written. A
/// node never leaves the store and its id is never reused: removing a value only detaches it with its whole subtree, so
/// that an undo can attach the same ids again.
///
/// A value type. Copies share their storage, so copying is O(1); a change copies the blocks of storage that it touches
/// and that another tree still shares, nothing else. One tree may be read by several threads at once; a change needs it
/// for itself. Views (`std::string_view`, `ChildList`) are valid as stated with each operation.
///
/// An id outside the store is a programming error in every operation, and so is any use of a tree that was moved from,
/// other than to assign to it or to destroy it.
class JSONTree {
public:
    /// The holder of the top-level value.
    static constexpr NodeID holder{0};

    /// Where a node is or was linked.
    struct Position {
        NodeID parent;
        std::int64_t index;
        friend bool operator==(const Position&, const Position&) = default;
    };

    /// A tree of one value, without key or children. A container has no scalar: it is ignored.
    explicit JSONTree(NodeKind kind, std::string_view scalar = {});

    JSONTree(const JSONTree&) = default;
    JSONTree(JSONTree&&) noexcept = default;
    JSONTree& operator=(const JSONTree& other);
    JSONTree& operator=(JSONTree&&) noexcept = default;
    ~JSONTree();

    // Reading. O(1) unless stated.

    /// The top-level value. The holder must have a child (it has none only between the two edits that replace it).
    NodeID root() const;

    /// The number of values that belong to the document: those linked below the holder, which is not counted itself.
    std::int64_t nodeCount() const;

    /// The number of nodes ever stored, the holder and detached ones included: every id is below it.
    std::int64_t storedNodeCount() const;

    NodeKind kind(NodeID id) const;

    /// The member name when the parent is an object; whatever the node was stored with otherwise (empty as a rule).
    /// The view is valid for as long as this tree lives, changed or not, or a copy that was made of it since.
    std::string_view key(NodeID id) const;

    /// By kind: the decoded string; the literal of the number; "true" or "false"; empty. Valid as `key` is.
    std::string_view scalar(NodeID id) const;

    /// The same texts with shared ownership, for as long as they are needed.
    SharedText sharedKey(NodeID id) const;
    SharedText sharedScalar(NodeID id) const;

    /// Empty for scalars. Valid until the next change of this tree.
    ChildList children(NodeID id) const;

    std::optional<NodeID> parent(NodeID id) const;

    /// The position among the parent's children; absent without a parent. O(children of the parent), see `ChildList`.
    std::optional<std::int64_t> indexInParent(NodeID id) const;

    /// Whether the node has a parent that is an object.
    bool isObjectMember(NodeID id) const;

    /// The number of nodes in the subtree, its top included.
    std::int64_t subtreeSize(NodeID id) const;

    /// The place of a value as a text: "$", "$.items[2]", "$[\"a b\"]". O(depth) plus a position in each array.
    std::string path(NodeID id) const;

    /// How many members of the object `parent` have that key. O(1) amortised: a large object keeps an index of its
    /// keys, built when it is first asked for and kept up by edits of this tree (a copy builds its own).
    std::int64_t keyOccurrences(NodeID parent, std::string_view key) const;

    /// Builds that index now if the object is large and has none, so that later questions are answered at once.
    void prepareKeyIndex(NodeID parent) const;

    /// A key for a new member of the object `parent`: `base` when no member has it, else "base 2", "base 3"… the first
    /// free.
    std::string uniqueKey(std::string_view base, NodeID parent) const;

    /// Whether both are the same value in memory: O(1), and false says nothing about the documents.
    bool isSameValue(const JSONTree& other) const { return storage_ == other.storage_; }

    /// Whether both documents are the same JSON, members in the same order: kinds, scalars, keys of members and numbers
    /// of children. Ids, detached nodes and the keys of array elements take no part. O(nodes), no recursion.
    friend bool operator==(const JSONTree& left, const JSONTree& right);

    // The primitive changes. They throw without any effect: std::bad_alloc, and std::length_error when the store is
    // full (2^31 nodes, or no room left for a text: see `TextArena`). The holder itself is never changed, other than to
    // take its one child.

    /// Stores a new detached node. The scalar of a container is ignored.
    NodeID addNode(NodeKind kind, std::string_view key, std::string_view scalar);

    /// Links a detached node as child number `index` (0 to the number of children) of the container `parent`, which
    /// must not lie in the node's own subtree. Returns the size of the subtree.
    std::int64_t attach(NodeID id, NodeID parent, std::int64_t index);

    /// Unlinks a node and tells where it was; absent, and no effect, when it has no parent.
    std::optional<Position> detach(NodeID id);

    /// Applies one edit and returns the edit that undoes it. A malformed edit is a programming error.
    TreeEdit apply(const TreeEdit& edit);

    /// Applies a list in order and returns the list that undoes it whole. When one edit throws, those before it are
    /// undone.
    std::vector<TreeEdit> apply(std::span<const TreeEdit> edits);

    /// The same, and tells of each edit in the state that it is about to be applied to. What is told must not throw.
    using WillApply = std::function<void(const JSONTree& tree, const TreeEdit& edit)>;
    std::vector<TreeEdit> apply(std::span<const TreeEdit> edits, const WillApply& willApply);

    // Intentions. Each prepares a change of this very tree, or tells that there is nothing to do. Those that need new
    // nodes store them, detached; they are harmless when the change is not applied.

    /// A new empty string: last child of `target` when `inside` is asked for (or `target` is the top-level value) and
    /// it is a container, else its next sibling.
    std::optional<TreeChange> insertChange(NodeID target, bool inside);

    /// A copy of the top-level value of `pasted`, placed likewise.
    std::optional<TreeChange> pasteChange(const JSONTree& pasted, NodeID target, bool inside);

    /// A copy of the subtree right after it.
    std::optional<TreeChange> duplicateChange(NodeID id);

    /// The node as a `kind`, its value converted. Between a scalar and a container a new node takes its place; children
    /// stay behind with the old one.
    std::optional<TreeChange> kindChange(NodeID id, NodeKind kind);

    /// The node `offset` places further among its siblings.
    std::optional<TreeChange> moveChange(NodeID id, std::int64_t offset);

    /// The node removed; the focus goes to the next sibling, else the previous one, else the parent.
    std::optional<TreeChange> removeChange(NodeID id);

    // Copies of subtrees. Ids are given in document order; no recursion.

    /// A tree of its own with a copy of the subtree. Shares texts with this tree.
    JSONTree subtree(NodeID id) const;

    /// Stores a detached copy of the other tree's top-level value and returns its id. Texts that both trees share are
    /// not copied.
    NodeID appendDetached(const JSONTree& other);

    /// Checks the invariants of the store, all of them, in O(stored nodes): for tests. A violation is a programming
    /// error.
    void checkInvariants() const;

private:
    friend class DocumentBuilder;
    friend const TreeStorage& storageOf(const JSONTree& tree);

    explicit JSONTree(std::shared_ptr<TreeStorage> storage);

    const TreeStorage& storage() const;
    void requireStored(NodeID id) const;
    TreeStorage& changeableStorage();
    std::optional<TreeChange> place(NodeID node, std::string_view keyStem, NodeID target, bool inside);
    std::optional<Position> positionBelowRoot(NodeID id) const;
    void setKey(NodeID id, const SharedText& key);
    void setValue(NodeID id, NodeKind kind, const SharedText& text);

    std::shared_ptr<TreeStorage> storage_;
    mutable KeyIndexCache keyIndexes_;
};

} // namespace quelm
