#include "Quelm/TreeEditor/TreeEditor.h"

#include "JSONCore/JSONSerializer.h"
#include "Quelm/Foundation/Disposal.h"
#include "Quelm/Foundation/Pasteboard.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/Foundation/WaitCursor.h"
#include "TextCore/Check.h"

#include <QThread>

#include <algorithm>
#include <new>
#include <utility>

namespace quelm {

namespace {

// Nodes that take about 200 ms to be walked through for their rows, or to be written.
constexpr std::int64_t longWalk = 4'000'000;
constexpr std::int64_t longWriting = 2'000'000;

} // namespace

TreeEditor::TreeEditor(std::shared_ptr<JSONDocument> document)
    : TreeEditor(std::move(document), Pasteboard::general()) {}

TreeEditor::TreeEditor(std::shared_ptr<JSONDocument> document, Pasteboard& pasteboard)
    : document_(std::move(document)), pasteboard_(pasteboard) {
    require(document_ != nullptr, "a tree editor has a document");
    // Connected before any view can be, so that nobody sees rows or the selection of a tree that is gone.
    connect(document_.get(), &JSONDocument::contentChanged, this, [this] { outlineRevision_.reset(); });
    connect(document_.get(), &JSONDocument::revisionChanged, this, [this] {
        // A view that came with the mode has asked for them already.
        if (!hasCurrentRows())
            reload();
    });
}

void TreeEditor::setUndoManager(UndoManager* manager) {
    undoManager_ = manager;
}

UndoManager* TreeEditor::undoManager() const {
    return undoManager_;
}

const JSONTree* TreeEditor::tree() const {
    require(QThread::currentThread() == thread(), "a tree editor is used on its own thread");
    const std::optional<JSONTree>& tree = document_->content().tree;
    return document_->mode() == EditorMode::tree && tree ? &*tree : nullptr;
}

void TreeEditor::setSelection(std::optional<NodeID> selection) {
    if (selection_ == selection)
        return;
    selection_ = selection;
    Q_EMIT selectionChanged();
}

void TreeEditor::setReadOnly(bool isReadOnly) {
    if (isReadOnly_ == isReadOnly)
        return;
    isReadOnly_ = isReadOnly;
    if (isReadOnly)
        setEditing(std::nullopt);
    Q_EMIT isReadOnlyChanged();
}

void TreeEditor::setEditing(std::optional<Editing> editing) {
    if (editing_ == editing || (editing && isReadOnly_))
        return;
    editing_ = editing;
    Q_EMIT editingChanged();
}

bool TreeEditor::isLinked(NodeID id) const {
    const JSONTree* tree = this->tree();
    if (!tree || id.raw <= JSONTree::holder.raw || id.raw >= tree->storedNodeCount())
        return false;
    // Whatever has a row is linked: the walk up a deep tree is for what is out of sight.
    if (hasCurrentRows() && outline_.index(id))
        return true;
    std::optional<NodeID> ancestor = id;
    while (ancestor && *ancestor != JSONTree::holder)
        ancestor = tree->parent(*ancestor);
    return ancestor.has_value();
}

bool TreeEditor::hasCurrentRows() const {
    return tree() && outlineRevision_ == document_->revision();
}

std::optional<NodeID> TreeEditor::linkedSelection() const {
    return selection_ && isLinked(*selection_) ? selection_ : std::nullopt;
}

// Rows.

void TreeEditor::reload() {
    const JSONTree* tree = this->tree();
    if (!tree)
        return;
    if (preparedRows_) {
        takeRows(*std::exchange(preparedRows_, std::nullopt));
        return;
    }
    const WaitCursor waiting(std::max(outline_.rowCount(), tree->children(tree->root()).size()) > longWalk);
    if (!makeRowsAnew(std::nullopt))
        report(tr("No hay memoria suficiente para mostrar todas las filas.\n"));
}

void TreeEditor::setPreparedRows(std::optional<PreparedRows> rows) {
    disposeInBackground(std::exchange(preparedRows_, std::move(rows)));
}

void TreeEditor::takeRows(PreparedRows rows) {
    disposeInBackground(std::exchange(outline_, std::move(rows.outline)));
    require(outline_.rowCount() > 0 && outline_.index(rows.selection), "a node selected among rows has one");
    noteRowsAreCurrent();
    const bool wasEditing = std::exchange(editing_, std::nullopt).has_value();
    selection_ = rows.selection;

    Q_EMIT outlineChanged();
    if (wasEditing)
        Q_EMIT editingChanged();
    // It is another node, whatever its number.
    Q_EMIT selectionChanged();
}

/// Returns whether all rows are there that should be.
bool TreeEditor::makeRowsAnew(std::optional<Editing> editing) {
    const JSONTree* tree = this->tree();
    const std::optional<NodeID> selectionBefore = selection_;
    const std::optional<Editing> editingBefore = editing_;
    const bool isComplete = rebuildRows();
    noteRowsAreCurrent();
    editing_ = editing && isLinked(editing->id) ? editing : std::nullopt;
    const std::optional<NodeID> selection = linkedSelection();
    if (!selection || !outline_.index(*selection))
        selection_ = tree->root();

    // Rows, selection and field belong to one tree again before anybody hears of any.
    Q_EMIT outlineChanged();
    if (editing_ != editingBefore)
        Q_EMIT editingChanged();
    if (selection_ != selectionBefore)
        Q_EMIT selectionChanged();
    return isComplete;
}

void TreeEditor::noteRowsAreCurrent() {
    outlineRevision_ = outline_.rowCount() > 0 ? std::optional(document_->revision()) : std::nullopt;
}

/// Without memory for all rows, the containers are collapsed; without memory even for those, there are none.
bool TreeEditor::rebuildRows() {
    const JSONTree& tree = *this->tree();
    try {
        outline_.rebuild(tree);
        return true;
    } catch (const std::bad_alloc&) {
        outline_ = {};
    }
    try {
        outline_.rebuild(tree);
    } catch (const std::bad_alloc&) {
        outline_ = {};
    }
    return false;
}

void TreeEditor::toggleExpansion(NodeID id, bool recursive) {
    if (isLinked(id))
        setExpanded(id, !outline_.expanded().contains(id), recursive);
}

bool TreeEditor::expandSelection(bool recursive) {
    const std::optional<NodeID> selection = linkedSelection();
    if (!selection || !isContainer(tree()->kind(*selection)))
        return false;
    if (!recursive && outline_.expanded().contains(*selection))
        return false;
    setExpanded(*selection, true, recursive);
    return true;
}

bool TreeEditor::collapseOrSelectParent() {
    const std::optional<NodeID> selection = linkedSelection();
    if (!selection)
        return false;
    if (outline_.expanded().contains(*selection) && isContainer(tree()->kind(*selection))) {
        setExpanded(*selection, false, false);
        return true;
    }
    const std::optional<NodeID> parent = tree()->parent(*selection);
    if (!parent || *parent == JSONTree::holder)
        return false;
    select(*parent);
    return true;
}

void TreeEditor::setAllExpanded(bool expanded) {
    if (!expanded)
        handInField();
    if (!tree())
        return;
    const WaitCursor waiting(tree()->nodeCount() > longWalk);
    changeRows([&](const JSONTree& tree) {
        outline_.setExpanded(tree.root(), expanded, true, tree);
        if (!expanded)
            outline_.setExpanded(tree.root(), true, false, tree);
    });
}

void TreeEditor::setExpanded(NodeID id, bool expanded, bool recursive) {
    if (!expanded)
        handInField();
    if (!isLinked(id))
        return;
    const WaitCursor waiting(tree()->nodeCount() > longWalk && (recursive || tree()->children(id).size() > longWalk));
    changeRows([&](const JSONTree& tree) { outline_.setExpanded(id, expanded, recursive, tree); });
}

void TreeEditor::changeRows(const std::function<void(const JSONTree&)>& change) {
    // Should it fail, the rows are made anew.
    const std::optional<std::int64_t> revision = std::exchange(outlineRevision_, std::nullopt);
    const bool isDone = attempt([&] {
        change(*tree());
        outlineRevision_ = revision;
    });
    if (isDone)
        Q_EMIT outlineChanged();
}

// Copying.

void TreeEditor::copyPath() {
    handInField();
    const JSONTree* tree = this->tree();
    if (!tree)
        return;
    const std::string path = tree->path(linkedSelection().value_or(tree->root()));
    pasteboard_.setString(TextRope::repairing(path));
}

bool TreeEditor::copyJSON(const JSONStyle& style) {
    handInField();
    const std::optional<NodeID> selection = linkedSelection();
    if (!selection)
        return false;
    const WaitCursor waiting(tree()->subtreeSize(*selection) > longWriting);
    return attempt([&] { pasteboard_.setString(JSONSerializer::serializeToString(*tree(), *selection, style)); });
}

} // namespace quelm
