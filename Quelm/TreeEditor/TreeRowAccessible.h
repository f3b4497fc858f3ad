#pragma once

#include "JSONCore/NodeID.h"

#include <QAccessible>
#include <QCoreApplication>

#include <cstdint>
#include <optional>

namespace quelm {

class TreeViewAccessible;
class TreeEditor;

/// What assistive technology sees of one row of a tree view: a tree item, which is a cell of the tree's only column.
/// While the row is edited in place, the field is its child.
///
/// It stands for a node, wherever its row goes, and is invalid while the node has no row; it never comes to stand for
/// another one, as in the tree of a later revision. Questions about an invalid row are answered with nothing. Each
/// costs O(log rows), and what the label and the value of the node do.
class TreeRowAccessible : public QAccessibleInterface,
                          public QAccessibleTableCellInterface,
                          public QAccessibleActionInterface {
    Q_DECLARE_TR_FUNCTIONS(quelm::TreeRowAccessible)

public:
    /// `view` must be valid, and must outlive this.
    TreeRowAccessible(TreeViewAccessible& view, NodeID id);

    NodeID node() const { return id_; }

    /// Where the row is; absent when there is none.
    std::optional<std::int64_t> position() const;

    /// What became different since the last call, or since this was made.
    struct Changes {
        bool position = false;
        bool name = false;
        bool expansion = false;
    };
    /// A row that is gone has not changed.
    Changes takeChanges();

    // QAccessibleInterface
    bool isValid() const override { return position().has_value(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    /// The name is that of `treeRowName`, the description the level.
    QString text(QAccessible::Text kind) const override;
    /// Does nothing: values are set through the field.
    void setText(QAccessible::Text, const QString&) override {}
    /// Empty outside of the viewport.
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::TreeItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    // QAccessibleTableCellInterface
    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override { return {}; }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return 0; }
    /// -1 when invalid.
    int rowIndex() const override;
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override;

    // QAccessibleActionInterface: to expand or collapse a container, to edit what can be edited (unless the editor is
    // read-only), to select, and to show the menu. They do what the user does with a row, and may end with this
    // interface deleted.
    QStringList actionNames() const override;
    QString localizedActionName(const QString& name) const override;
    QString localizedActionDescription(const QString& name) const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    TreeEditor& editor() const;
    /// These are for a valid row.
    bool isContainerRow() const;
    bool isExpanded() const;
    bool isEditable() const;
    bool hasKeyOrValue() const;
    QString name() const;
    QAccessibleInterface* field() const;

    TreeViewAccessible& view_;
    const NodeID id_;
    /// The revision of the document whose node it is.
    const std::optional<std::int64_t> revision_;

    // As of the last `takeChanges`.
    std::optional<std::int64_t> knownPosition_;
    QString knownName_;
    bool isKnownExpanded_ = false;
};

} // namespace quelm
