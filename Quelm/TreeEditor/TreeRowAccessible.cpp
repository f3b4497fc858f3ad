#include "Quelm/TreeEditor/TreeRowAccessible.h"

#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeRowAccessibleName.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"

#include <utility>

namespace quelm {

TreeRowAccessible::TreeRowAccessible(TreeViewAccessible& view, NodeID id)
    : view_(view), id_(id), revision_(view.editor().outlineRevision()) {
    takeChanges();
}

TreeEditor& TreeRowAccessible::editor() const {
    return view_.editor();
}

std::optional<std::int64_t> TreeRowAccessible::position() const {
    if (!view_.hasRows() || editor().outlineRevision() != revision_)
        return std::nullopt;
    return editor().outline().index(id_);
}

TreeRowAccessible::Changes TreeRowAccessible::takeChanges() {
    const std::optional<std::int64_t> now = position();
    if (!now)
        return {};
    const auto before = std::exchange(knownPosition_, now);
    const QString nameBefore = std::exchange(knownName_, name());
    const bool wasExpanded = std::exchange(isKnownExpanded_, isExpanded());
    return {.position = now != before, .name = knownName_ != nameBefore, .expansion = isKnownExpanded_ != wasExpanded};
}

bool TreeRowAccessible::isContainerRow() const {
    return isContainer(editor().tree()->kind(id_));
}

bool TreeRowAccessible::isExpanded() const {
    return isContainerRow() && editor().outline().expanded().contains(id_);
}

bool TreeRowAccessible::isEditable() const {
    return hasKeyOrValue() && !editor().isReadOnly();
}

/// Whether there is a key or a value that could be edited or toggled.
bool TreeRowAccessible::hasKeyOrValue() const {
    const JSONTree& tree = *editor().tree();
    const NodeKind kind = tree.kind(id_);
    return tree.isObjectMember(id_) || (!isContainer(kind) && kind != NodeKind::null);
}

QString TreeRowAccessible::name() const {
    return treeRowName(id_, *editor().tree());
}

// The interface.

QWindow* TreeRowAccessible::window() const {
    return isValid() ? view_.window() : nullptr;
}

QAccessibleInterface* TreeRowAccessible::parent() const {
    return &view_;
}

QAccessibleInterface* TreeRowAccessible::table() const {
    return &view_;
}

QAccessibleInterface* TreeRowAccessible::field() const {
    return isValid() ? view_.fieldOf(id_) : nullptr;
}

int TreeRowAccessible::childCount() const {
    return field() ? 1 : 0;
}

QAccessibleInterface* TreeRowAccessible::child(int index) const {
    return index == 0 ? field() : nullptr;
}

int TreeRowAccessible::indexOfChild(const QAccessibleInterface* child) const {
    return child && child == field() ? 0 : -1;
}

QAccessibleInterface* TreeRowAccessible::childAt(int x, int y) const {
    QAccessibleInterface* child = field();
    return child && child->rect().contains(x, y) ? child : nullptr;
}

QAccessibleInterface* TreeRowAccessible::focusChild() const {
    QAccessibleInterface* child = field();
    return child ? child->focusChild() : nullptr;
}

QString TreeRowAccessible::text(QAccessible::Text kind) const {
    const std::optional<std::int64_t> row = position();
    if (row && kind == QAccessible::Name)
        return name();
    if (row && kind == QAccessible::Description)
        return treeRowLevel(editor().outline().rowDepth(*row));
    return {};
}

QRect TreeRowAccessible::rect() const {
    const std::optional<std::int64_t> row = position();
    const std::optional<QRect> area = row ? view_.view().rowArea(*row) : std::nullopt;
    return area ? QRect(view_.view().viewport()->mapToGlobal(area->topLeft()), area->size()) : QRect();
}

QAccessible::State TreeRowAccessible::state() const {
    QAccessible::State state;
    const std::optional<std::int64_t> row = position();
    if (!row) {
        state.invalid = true;
        return state;
    }
    const TreeView& view = view_.view();
    state.disabled = !view.isEnabled();
    state.focusable = true;
    state.selectable = true;
    state.selected = isSelected();
    state.focused = state.selected && view.hasFocus();
    state.expandable = isContainerRow();
    state.expanded = isExpanded();
    state.collapsed = state.expandable && !state.expanded;
    state.editable = isEditable();
    state.readOnly = hasKeyOrValue() && !state.editable;
    state.invisible = !view.isVisible();
    state.offscreen = !view.rowArea(*row);
    return state;
}

void* TreeRowAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TableCellInterface)
        return static_cast<QAccessibleTableCellInterface*>(this);
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
}

bool TreeRowAccessible::isSelected() const {
    return isValid() && editor().selection() == id_;
}

int TreeRowAccessible::rowIndex() const {
    return static_cast<int>(position().value_or(-1));
}

} // namespace quelm
