#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/TreeOutline.h"
#include "Quelm/Documents/JSONDocument.h"

#include <QObject>

#include <memory>
#include <optional>

namespace quelm {

/// The controller of a window's tree mode: the visible outline of the document's tree and the selected node. It has no
/// widgets. Operations do nothing while the document shows its text or has no tree, and an operation on the selection
/// nothing while there is none or it is not part of the document any more. For the main thread.
class TreeEditor : public QObject {
    Q_OBJECT

public:
    /// An empty outline and no selection, until the first `reload`.
    explicit TreeEditor(std::shared_ptr<JSONDocument> document);

    JSONDocument& document() const { return *document_; }

    /// The document's tree while the document is shown as one, else null. Valid until the content changes.
    const JSONTree* tree() const;

    const TreeOutline& outline() const { return outline_; }

    /// The revision of the document whose rows the outline has; absent before the first `reload`.
    std::optional<std::int64_t> outlineRevision() const { return outlineRevision_; }

    std::optional<NodeID> selection() const { return selection_; }
    void setSelection(std::optional<NodeID> selection);
    void select(NodeID id) { setSelection(id); }

    /// Makes the rows anew with the top-level value open; a selection that has no row afterwards goes to it. Happens by
    /// itself whenever the document's revision changes. O(rows).
    void reload();

    /// The node to the opposite state, with all containers below it when `recursive`.
    void toggleExpansion(NodeID id, bool recursive);

    /// Whether there was something to expand: an expanded container only counts when `recursive`.
    bool expandSelection(bool recursive);

    /// Collapses the selected container, or goes to the parent of what is not expanded; false at the top-level value.
    bool collapseOrSelectParent();

    /// Every container; collapsing leaves the top-level value open. O(nodes).
    void setAllExpanded(bool expanded);

Q_SIGNALS:
    void outlineChanged();
    void selectionChanged();

private:
    bool isLinked(NodeID id, const JSONTree& tree) const;
    std::optional<NodeID> linkedSelection(const JSONTree& tree) const;
    void setExpanded(NodeID id, bool expanded, bool recursive, const JSONTree& tree);

    const std::shared_ptr<JSONDocument> document_;
    TreeOutline outline_;
    std::optional<std::int64_t> outlineRevision_;
    std::optional<NodeID> selection_;
};

} // namespace quelm
