#include "Quelm/TreeEditor/TreeViewAccessible.h"

#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Quelm/TreeEditor/TreeViewAccessibleField.h"

namespace quelm {

namespace {

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
    if (className == QLatin1String(TreeView::staticMetaObject.className())) {
        if (auto* view = qobject_cast<TreeView*>(object))
            return new TreeViewAccessible(*view);
    }
    if (className == QLatin1String(InlineField::staticMetaObject.className())) {
        if (auto* field = qobject_cast<InlineField*>(object))
            return new TreeViewAccessibleField(*field);
    }
    return nullptr;
}

} // namespace

void installTreeViewAccessibility() {
    QAccessible::installFactory(makeInterface);
}

TreeViewAccessible::TreeViewAccessible(TreeView& view) : QAccessibleWidget(&view, QAccessible::Tree), rows_(*this) {}

TreeView& TreeViewAccessible::view() const {
    return *static_cast<TreeView*>(widget());
}

TreeEditor& TreeViewAccessible::editor() const {
    return view().editor();
}

// The interface.

bool TreeViewAccessible::isValid() const {
    return QAccessibleWidget::isValid() && qobject_cast<TreeView*>(widget()) != nullptr;
}

QAccessible::State TreeViewAccessible::state() const {
    if (isValid())
        return QAccessibleWidget::state();
    QAccessible::State state;
    state.invalid = true;
    return state;
}

QString TreeViewAccessible::text(QAccessible::Text kind) const {
    return isValid() ? QAccessibleWidget::text(kind) : QString();
}

int TreeViewAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* row = dynamic_cast<const TreeRowAccessible*>(child);
    return row && row->parent() == this ? row->rowIndex() : -1;
}

QAccessibleInterface* TreeViewAccessible::childAt(int x, int y) const {
    if (!hasRows())
        return nullptr;
    const InlineField* field = openField();
    if (field && field->rect().contains(field->mapFromGlobal(QPoint(x, y))))
        return rowOf(editor().editing()->id);
    const QWidget& viewport = *view().viewport();
    const QPoint place = viewport.mapFromGlobal(QPoint(x, y));
    const std::optional<std::int64_t> row = viewport.rect().contains(place) ? view().rowAt(place) : std::nullopt;
    return row ? child(static_cast<int>(*row)) : nullptr;
}

QAccessibleInterface* TreeViewAccessible::focusChild() const {
    if (!isValid())
        return nullptr;
    const std::optional<std::int64_t> row = view().hasFocus() ? selectedPosition() : std::nullopt;
    return row ? child(static_cast<int>(*row)) : QAccessibleWidget::focusChild();
}

void* TreeViewAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

// Rows.

bool TreeViewAccessible::hasRows() const {
    return isValid() && editor().hasCurrentRows();
}

TreeRowAccessible* TreeViewAccessible::rowOf(NodeID id) const {
    return hasRows() && editor().outline().index(id) ? &rows_.row(id) : nullptr;
}

int TreeViewAccessible::rowCount() const {
    // There are fewer nodes than an int counts.
    return hasRows() ? static_cast<int>(editor().outline().rowCount()) : 0;
}

QAccessibleInterface* TreeViewAccessible::child(int index) const {
    return 0 <= index && index < rowCount() ? &rows_.row(editor().outline().rowID(index)) : nullptr;
}

QAccessibleInterface* TreeViewAccessible::cellAt(int row, int column) const {
    if (!isValid())
        return nullptr;
    QAccessibleInterface* cell = column == 0 ? child(row) : nullptr;
    // Of the holder, which never has a row.
    return cell ? cell : &rows_.row(JSONTree::holder);
}

std::optional<std::int64_t> TreeViewAccessible::selectedPosition() const {
    const std::optional<NodeID> selection = editor().selection();
    return selection && hasRows() ? editor().outline().index(*selection) : std::nullopt;
}

QList<int> TreeViewAccessible::selectedRows() const {
    const std::optional<std::int64_t> row = isValid() ? selectedPosition() : std::nullopt;
    return row ? QList<int>{static_cast<int>(*row)} : QList<int>();
}

QList<QAccessibleInterface*> TreeViewAccessible::selectedCells() const {
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows())
        cells.append(child(row));
    return cells;
}

bool TreeViewAccessible::selectRow(int row) {
    if (row < 0 || row >= rowCount())
        return false;
    editor().select(editor().outline().rowID(row));
    return true;
}

// The field.

InlineField* TreeViewAccessible::openField() const {
    InlineField* field = view().inlineField();
    // One that is done is deleted a little later.
    return field && editor().editing() && !field->isFinished() && !field->isHidden() ? field : nullptr;
}

QAccessibleInterface* TreeViewAccessible::fieldOf(NodeID id) const {
    if (!isValid() || !editor().editing() || editor().editing()->id != id)
        return nullptr;
    InlineField* field = openField();
    return field ? QAccessible::queryAccessibleInterface(field) : nullptr;
}

} // namespace quelm
