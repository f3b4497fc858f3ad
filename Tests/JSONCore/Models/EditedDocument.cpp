#include "Tests/JSONCore/Models/EditedDocument.h"

#include "Tests/JSONCore/Models/NaiveParser.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quelm::test {

EditedDocument::EditedDocument(const std::string& text) : tree_(parsed(text)), model_(naiveParse(text).value()) {
    rebuild();
}

void EditedDocument::insert(NodeID target, bool inside) {
    perform(tree_.insertChange(target, inside), model_.insertChange(target, inside));
}

void EditedDocument::paste(const std::string& text, NodeID target, bool inside) {
    perform(tree_.pasteChange(parsed(text), target, inside),
            model_.pasteChange(naiveParse(text).value(), target, inside));
}

void EditedDocument::duplicate(NodeID id) {
    perform(tree_.duplicateChange(id), model_.duplicateChange(id));
}

void EditedDocument::changeKind(NodeID id, NodeKind kind) {
    perform(tree_.kindChange(id, kind), model_.kindChange(id, kind));
}

void EditedDocument::move(NodeID id, std::int64_t offset) {
    perform(tree_.moveChange(id, offset), model_.moveChange(id, offset));
}

void EditedDocument::remove(NodeID id) {
    perform(tree_.removeChange(id), model_.removeChange(id));
}

void EditedDocument::perform(const std::optional<TreeChange>& change, const std::optional<TreeChange>& expected) {
    ASSERT_EQ(change, expected);
    ASSERT_EQ(tree_.storedNodeCount(), model_.storedNodeCount());
    if (change)
        applyList(change->edits);
}

void EditedDocument::applyList(const std::vector<TreeEdit>& edits) {
    undoList_.push_back(carryOut(edits));
    redoList_.clear();
}

std::vector<TreeEdit> EditedDocument::carryOut(const std::vector<TreeEdit>& edits) {
    const std::vector<TreeEdit> inverses = tree_.apply(edits);
    EXPECT_EQ(inverses, model_.apply(edits));
    std::vector<TreeEdit> all = edits;
    all.insert(all.end(), inverses.begin(), inverses.end());
    outline_.update(all, tree_);
    outlineModel_.update(all, model_);
    // By the rules of finished rows, marks of other members may be out of date after several renames in one
    // list.
    if (std::count_if(edits.begin(), edits.end(), [](const TreeEdit& edit) { return edit.asSetKey(); }) > 1)
        outlineModel_.makeRowsAnew(model_);
    return inverses;
}

void EditedDocument::applyThereAndBack(const TreeEdit& edit) {
    const JSONTree before = tree_;
    apply(edit);
    const JSONTree after = tree_;
    undo();
    ASSERT_EQ(tree_, before);
    ASSERT_EQ(tree_.nodeCount(), before.nodeCount());
    redo();
    ASSERT_EQ(tree_, after);
    ASSERT_EQ(tree_.nodeCount(), after.nodeCount());
}

void EditedDocument::replay(std::vector<std::vector<TreeEdit>>& from, std::vector<std::vector<TreeEdit>>& to) {
    if (from.empty())
        return;
    const std::vector<TreeEdit> edits = std::move(from.back());
    from.pop_back();
    to.push_back(carryOut(edits));
}

void EditedDocument::setExpanded(NodeID id, bool isExpanded, bool recursive) {
    outline_.setExpanded(id, isExpanded, recursive, tree_);
    outlineModel_.setExpanded(id, isExpanded, recursive, model_);
}

void EditedDocument::reveal(NodeID id) {
    outline_.reveal(id, tree_);
    outlineModel_.reveal(id, model_);
}

void EditedDocument::rebuild() {
    outline_.rebuild(tree_);
    outlineModel_.rebuild(model_);
}

NodeID EditedDocument::addNode(NodeKind kind, std::string_view key, std::string_view scalar) {
    const NodeID id = tree_.addNode(kind, key, scalar);
    EXPECT_EQ(id, model_.addNode(kind, key, scalar));
    return id;
}

void EditedDocument::keepSnapshot() {
    snapshots_.push_back({tree_, outline_, model_, outlineModel_});
}

void EditedDocument::checkRows() const {
    expectSameRows(outline_, tree_, outlineModel_);
    outline_.checkInvariants(tree_);
}

void EditedDocument::checkNodes() const {
    expectSameNodes(tree_, model_);
    tree_.checkInvariants();
}

void EditedDocument::checkSnapshots() const {
    for (const Snapshot& snapshot : snapshots_) {
        ASSERT_NO_FATAL_FAILURE(expectSameNodes(snapshot.tree, snapshot.model));
        ASSERT_NO_FATAL_FAILURE(expectSameRows(snapshot.outline, snapshot.tree, snapshot.outlineModel));
        snapshot.tree.checkInvariants();
        snapshot.outline.checkInvariants(snapshot.tree);
    }
}

} // namespace quelm::test
