#pragma once

#include "JSONCore/NodeID.h"
#include "Quelm/TreeEditor/TreeRowAccessible.h"
#include "Quelm/TreeEditor/TreeRowAccessibleCache.h"

#include <QAccessibleWidget>

#include <optional>
#include <vector>

namespace quelm {

class InlineField;
class TreeEditor;
class TreeView;

/// Makes tree views and the fields in their rows, of subclasses too, known to assistive technology. To be called before
/// anything of a view is announced, such as its name. Further calls do nothing.
void installTreeViewAccessibility();

/// What assistive technology sees of a tree view: a tree whose children are the visible rows of the outline, in their
/// order, which is also a table of one column (that is how Qt describes its own trees, so that nobody walks through
/// their rows).
///
/// Rows are made when they are asked for, see `TreeRowAccessibleCache`; no question walks through them, and each costs
/// O(log rows). It may be asked for its state while the view is being destroyed, and then is no longer valid.
class TreeViewAccessible : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit TreeViewAccessible(TreeView& view);

    /// These three are for a valid interface.
    TreeView& view() const;
    TreeEditor& editor() const;
    std::optional<std::int64_t> selectedPosition() const;

    /// Whether the outline has the rows of the document as it is; false when invalid.
    bool hasRows() const;

    /// The row of a node; null when it has none.
    TreeRowAccessible* rowOf(NodeID id) const;

    /// The rows that somebody has asked for lately.
    std::vector<TreeRowAccessible*> knownRows() const { return rows_.rows(); }

    /// Those of the rows that were made. For tests.
    void checkInvariants() const { rows_.checkInvariants(); }

    /// The field in which the node is edited; null when it is not.
    QAccessibleInterface* fieldOf(NodeID id) const;

    // QAccessibleInterface
    bool isValid() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    int childCount() const override { return rowCount(); }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    /// A field is over the rows that it covers.
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    // QAccessibleTableInterface. One row is selected, or none; it cannot be deselected.
    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    /// An invalid row outside of the table: Qt's bridge to AT-SPI takes for granted that there is a cell wherever a
    /// screen reader asks for one, which may have learnt the number of rows before some went.
    QAccessibleInterface* cellAt(int row, int column) const override;
    int rowCount() const override;
    int columnCount() const override { return 1; }
    QString rowDescription(int) const override { return {}; }
    QString columnDescription(int) const override { return {}; }
    int selectedCellCount() const override { return selectedRowCount(); }
    QList<QAccessibleInterface*> selectedCells() const override;
    int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
    QList<int> selectedRows() const override;
    bool isRowSelected(int row) const override { return selectedRows().contains(row); }
    int selectedColumnCount() const override { return 0; }
    QList<int> selectedColumns() const override { return {}; }
    bool isColumnSelected(int) const override { return false; }
    bool selectRow(int row) override;
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    /// Nothing depends on it: rows stand for nodes.
    void modelChange(QAccessibleTableModelChangeEvent*) override {}

private:
    InlineField* openField() const;

    mutable TreeRowAccessibleCache rows_;
};

} // namespace quelm
