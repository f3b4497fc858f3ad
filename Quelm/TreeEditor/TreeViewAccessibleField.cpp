#include "Quelm/TreeEditor/TreeViewAccessibleField.h"

#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"

namespace quelm {

namespace {

TreeView* treeViewAround(const QWidget* widget) {
    while (widget) {
        widget = widget->parentWidget();
        if (auto* view = qobject_cast<TreeView*>(const_cast<QWidget*>(widget)))
            return view;
    }
    return nullptr;
}

} // namespace

TreeViewAccessibleField::TreeViewAccessibleField(InlineField& field)
    : QAccessibleWidget(&field, QAccessible::Grouping) {}

QAccessibleInterface* TreeViewAccessibleField::parent() const {
    TreeView* view = treeViewAround(widget());
    auto* tree = dynamic_cast<TreeViewAccessible*>(QAccessible::queryAccessibleInterface(view));
    const auto editing = view ? view->editor().editing() : std::nullopt;
    TreeRowAccessible* row = tree && editing ? tree->rowOf(editing->id) : nullptr;
    return row ? row : QAccessibleWidget::parent();
}

QString TreeViewAccessibleField::text(QAccessible::Text kind) const {
    const auto* field = qobject_cast<InlineField*>(widget());
    if (!field)
        return {};
    const QString own = QAccessibleWidget::text(kind);
    return own.isEmpty() && kind == QAccessible::Name ? field->textView().accessibleName() : own;
}

} // namespace quelm
