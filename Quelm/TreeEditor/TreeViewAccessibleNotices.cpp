#include "Quelm/TreeEditor/TreeViewAccessibleNotices.h"

#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"

#include <QEvent>

#include <utility>
#include <vector>

namespace quelm {

TreeViewAccessibleNotices::TreeViewAccessibleNotices(TreeView& view, Receiver receiver)
    : QObject(&view), view_(view), receiver_(std::move(receiver)) {
    connect(&view.editor(), &TreeEditor::outlineChanged, this, &TreeViewAccessibleNotices::announceRows);
    connect(&view.editor(), &TreeEditor::selectionChanged, this, &TreeViewAccessibleNotices::announceSelection);
    connect(&view.editor(), &TreeEditor::isReadOnlyChanged, this, &TreeViewAccessibleNotices::announceReadOnly);
    view.installEventFilter(this);
}

bool TreeViewAccessibleNotices::eventFilter(QObject* watched, QEvent* event) {
    // Qt announces the focus of the view after this event, and of two the last one counts.
    if (event->type() == QEvent::FocusIn && receiver_.isListening())
        QMetaObject::invokeMethod(this, &TreeViewAccessibleNotices::announceFocus, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

TreeViewAccessible* TreeViewAccessibleNotices::tree() const {
    return dynamic_cast<TreeViewAccessible*>(QAccessible::queryAccessibleInterface(&view_));
}

void TreeViewAccessibleNotices::announceRows() {
    TreeViewAccessible* tree = receiver_.isListening() ? this->tree() : nullptr;
    if (!tree)
        return;
    const std::optional<std::int64_t> revision = view_.editor().outlineRevision();
    const bool isOtherTree = std::exchange(announcedRevision_, revision) != revision;
    bool isReordered = std::exchange(announcedCount_, tree->rowCount()) != tree->rowCount() || isOtherTree;
    if (isOtherTree)
        announcedSelection_.reset();

    // Whoever is told may ask for other rows, so that these are gone meanwhile.
    struct Change {
        NodeID id;
        TreeRowAccessible::Changes changes;
    };
    std::vector<Change> changed;
    for (TreeRowAccessible* row : tree->knownRows()) {
        const TreeRowAccessible::Changes changes = row->takeChanges();
        isReordered |= changes.position;
        if (changes.name || changes.expansion)
            changed.push_back({row->node(), changes});
    }

    if (isReordered) {
        QAccessibleTableModelChangeEvent event(&view_, QAccessibleTableModelChangeEvent::ModelReset);
        receiver_.take(event);
    }
    for (const auto& [id, changes] : changed) {
        if (changes.expansion) {
            QAccessible::State state;
            state.expanded = true;
            state.collapsed = true;
            announceState(id, state);
        }
        if (changes.name)
            announceOfRow(id, QAccessible::NameChanged);
    }
    announceSelection();
}

/// The selection moves when the editor says so, and when its row comes or goes.
void TreeViewAccessibleNotices::announceSelection() {
    TreeViewAccessible* tree = receiver_.isListening() ? this->tree() : nullptr;
    if (!tree)
        return;
    const std::optional<NodeID> selected =
        tree->selectedPosition() ? view_.editor().selection() : std::optional<NodeID>();
    const std::optional<NodeID> before = std::exchange(announcedSelection_, selected);
    if (selected == before)
        return;
    if (before && tree->rowOf(*before))
        announceOfRow(*before, QAccessible::SelectionRemove);
    if (selected)
        announceOfRow(*selected, QAccessible::Selection);
    announceFocus();
}

void TreeViewAccessibleNotices::announceFocus() {
    TreeViewAccessible* tree = receiver_.isListening() && view_.hasFocus() ? this->tree() : nullptr;
    if (!tree)
        return;
    const std::optional<std::int64_t> row = tree->selectedPosition();
    QAccessibleEvent event(&view_, QAccessible::Focus);
    if (row)
        event.setChild(static_cast<int>(*row));
    receiver_.take(event);
}

void TreeViewAccessibleNotices::announceReadOnly() {
    TreeViewAccessible* tree = receiver_.isListening() ? this->tree() : nullptr;
    if (!tree)
        return;
    // Whoever is told may ask for other rows, so that these are gone meanwhile.
    std::vector<NodeID> changed;
    for (const TreeRowAccessible* row : tree->knownRows()) {
        const QAccessible::State state = row->state();
        if (state.editable || state.readOnly)
            changed.push_back(row->node());
    }
    QAccessible::State state;
    state.editable = true;
    state.readOnly = true;
    for (const NodeID id : changed)
        announceState(id, state);
}

void TreeViewAccessibleNotices::announceOfRow(NodeID id, QAccessible::Event kind) {
    TreeViewAccessible* tree = this->tree();
    const TreeRowAccessible* row = tree ? tree->rowOf(id) : nullptr;
    if (!row)
        return;
    QAccessibleEvent event(&view_, kind);
    event.setChild(row->rowIndex());
    receiver_.take(event);
}

void TreeViewAccessibleNotices::announceState(NodeID id, QAccessible::State changed) {
    TreeViewAccessible* tree = this->tree();
    const TreeRowAccessible* row = tree ? tree->rowOf(id) : nullptr;
    if (!row)
        return;
    QAccessibleStateChangeEvent event(&view_, changed);
    event.setChild(row->rowIndex());
    receiver_.take(event);
}

} // namespace quelm
