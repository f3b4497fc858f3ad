#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/TreeOutline.h"
#include "Tests/JSONCore/Models/NaiveOutline.h"
#include "Tests/JSONCore/Models/NaiveTree.h"

#include <optional>
#include <string>
#include <vector>

namespace quelm::test {

/// A document being edited in its tree, with undo, done twice: by the library and by the models. Every
/// operation fails the test when the two give different results; `check…` compare all that they hold.
class EditedDocument {
public:
    explicit EditedDocument(const std::string& text);

    const JSONTree& tree() const { return tree_; }
    const TreeOutline& outline() const { return outline_; }
    const NaiveTree& model() const { return model_; }

    // Intentions, applied at once when they apply.
    void insert(NodeID target, bool inside);
    void paste(const std::string& text, NodeID target, bool inside);
    void duplicate(NodeID id);
    void changeKind(NodeID id, NodeKind kind);
    void move(NodeID id, std::int64_t offset);
    void remove(NodeID id);

    /// Applies one edit, as renaming a key or committing a value does.
    void apply(const TreeEdit& edit) { applyList({edit}); }

    /// Applies any edits in order, which the tree must be able to take.
    void applyList(const std::vector<TreeEdit>& edits);

    /// Applies it, undoes it and applies it again, and compares the tree with copies of before and after each
    /// time.
    void applyThereAndBack(const TreeEdit& edit);

    // Nothing happens when there is nothing to undo or redo.
    void undo() { replay(undoList_, redoList_); }
    void redo() { replay(redoList_, undoList_); }
    bool canUndo() const { return !undoList_.empty(); }

    void setExpanded(NodeID id, bool isExpanded, bool recursive);
    void reveal(NodeID id);
    void rebuild();

    /// Stores a node that nothing links yet.
    NodeID addNode(NodeKind kind, std::string_view key, std::string_view scalar);

    /// Keeps copies of everything, to see at the end that they never changed.
    void keepSnapshot();

    /// Puts a copy in the place of the tree, as a document does that hands its tree out and takes it back.
    void passTreeOn() { tree_ = JSONTree(tree_); }

    void checkRows() const;
    void checkNodes() const;
    void checkSnapshots() const;

private:
    void perform(const std::optional<TreeChange>& change, const std::optional<TreeChange>& expected);
    std::vector<TreeEdit> carryOut(const std::vector<TreeEdit>& edits);
    void replay(std::vector<std::vector<TreeEdit>>& from, std::vector<std::vector<TreeEdit>>& to);

    struct Snapshot {
        JSONTree tree;
        TreeOutline outline;
        NaiveTree model;
        NaiveOutline outlineModel;
    };

    JSONTree tree_;
    TreeOutline outline_;
    NaiveTree model_;
    NaiveOutline outlineModel_;
    std::vector<std::vector<TreeEdit>> undoList_;
    std::vector<std::vector<TreeEdit>> redoList_;
    std::vector<Snapshot> snapshots_;
};

} // namespace quelm::test
