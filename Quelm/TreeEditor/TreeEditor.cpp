#include "Quelm/TreeEditor/TreeEditor.h"

#include "TextCore/Check.h"

namespace quelm {

TreeEditor::TreeEditor(std::shared_ptr<JSONDocument> document) : document_(std::move(document)) {
    require(document_ != nullptr, "a tree editor has a document");
    // Connected before any view can be, so that nobody sees the selection of a tree that is gone.
    connect(document_.get(), &JSONDocument::revisionChanged, this, &TreeEditor::reload);
}

const JSONTree* TreeEditor::tree() const {
    const std::optional<JSONTree>& tree = document_->content().tree;
    return document_->mode() == EditorMode::tree && tree ? &*tree : nullptr;
}

void TreeEditor::setSelection(std::optional<NodeID> selection) {
    if (selection_ == selection)
        return;
    selection_ = selection;
    Q_EMIT selectionChanged();
}

void TreeEditor::reload() {
    const JSONTree* tree = this->tree();
    if (!tree)
        return;
    outline_.rebuild(*tree);
    outlineRevision_ = document_->revision();
    const std::optional<NodeID> before = selection_;
    const std::optional<NodeID> selection = linkedSelection(*tree);
    if (!selection || !outline_.index(*selection))
        selection_ = tree->root();

    // Rows and selection belong to one tree again before anybody hears of either.
    Q_EMIT outlineChanged();
    if (selection_ != before)
        Q_EMIT selectionChanged();
}

void TreeEditor::toggleExpansion(NodeID id, bool recursive) {
    if (const JSONTree* tree = this->tree())
        setExpanded(id, !outline_.expanded().contains(id), recursive, *tree);
}

bool TreeEditor::expandSelection(bool recursive) {
    const JSONTree* tree = this->tree();
    const auto selection = tree ? linkedSelection(*tree) : std::nullopt;
    if (!selection || !isContainer(tree->kind(*selection)))
        return false;
    if (!recursive && outline_.expanded().contains(*selection))
        return false;
    setExpanded(*selection, true, recursive, *tree);
    return true;
}

bool TreeEditor::collapseOrSelectParent() {
    const JSONTree* tree = this->tree();
    const auto selection = tree ? linkedSelection(*tree) : std::nullopt;
    if (!selection)
        return false;
    if (outline_.expanded().contains(*selection) && isContainer(tree->kind(*selection))) {
        setExpanded(*selection, false, false, *tree);
        return true;
    }
    const std::optional<NodeID> parent = tree->parent(*selection);
    if (!parent || *parent == JSONTree::holder)
        return false;
    select(*parent);
    return true;
}

void TreeEditor::setAllExpanded(bool expanded) {
    const JSONTree* tree = this->tree();
    if (!tree)
        return;
    outline_.setExpanded(tree->root(), expanded, true, *tree);
    if (!expanded)
        outline_.setExpanded(tree->root(), true, false, *tree);
    Q_EMIT outlineChanged();
}

bool TreeEditor::isLinked(NodeID id, const JSONTree& tree) const {
    if (id.raw <= JSONTree::holder.raw || id.raw >= tree.storedNodeCount())
        return false;
    std::optional<NodeID> ancestor = id;
    while (ancestor && *ancestor != JSONTree::holder)
        ancestor = tree.parent(*ancestor);
    return ancestor.has_value();
}

std::optional<NodeID> TreeEditor::linkedSelection(const JSONTree& tree) const {
    return selection_ && isLinked(*selection_, tree) ? selection_ : std::nullopt;
}

void TreeEditor::setExpanded(NodeID id, bool expanded, bool recursive, const JSONTree& tree) {
    outline_.setExpanded(id, expanded, recursive, tree);
    Q_EMIT outlineChanged();
}

} // namespace quelm
