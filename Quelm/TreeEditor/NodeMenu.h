#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"

#include <QMenu>

#include <functional>
#include <optional>

namespace quelm {

class TreeEditor;

/// The menu of one node of the tree, for the state of the moment in which it is made. Every item selects its node and
/// then performs one operation of the editor, which must outlive the menu; what does not apply does nothing. While the
/// editor is read-only, also when it becomes so under an open menu, the items that would change the tree are disabled.
/// Whoever makes the menu shows and deletes it.
class NodeMenu : public QMenu {
    Q_OBJECT

public:
    NodeMenu(TreeEditor& editor, NodeID id, QWidget* parent = nullptr);

private:
    using Operation = std::function<void(TreeEditor&)>;
    QAction* add(const QString& title, Operation operation);
    QAction* addEdit(const QString& title, const QKeySequence& key, Operation operation);

    TreeEditor& editor_;
    const NodeID id_;
};

/// Adds an item for each kind of value, under its name, that calls `choose`; the one of `current` is disabled, and all
/// are while the editor is read-only. The editor must outlive the menu.
void addKindItems(QMenu& menu, TreeEditor& editor, std::optional<NodeKind> current,
                  const std::function<void(NodeKind)>& choose);

} // namespace quelm
