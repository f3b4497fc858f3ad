#pragma once

#include "JSONCore/NodeID.h"
#include "Quelm/TextEngine/TextViewNotices.h"

#include <QAccessible>
#include <QObject>

#include <cstdint>
#include <optional>

namespace quelm {

class TreeView;
class TreeViewAccessible;

/// Tells assistive technology, while there is any, what happens to the rows of a tree view: which is selected and so
/// has the focus of the view, that rows came or went, and what changed of the rows that it has asked about lately (of
/// the others it knows nothing), such as whether they can be edited. O(known rows × log rows) when the rows change,
/// O(log rows) when the selection does.
class TreeViewAccessibleNotices : public QObject {
public:
    using Receiver = TextViewNotices::Receiver;

    /// The view owns it, and has connected itself to its editor before.
    explicit TreeViewAccessibleNotices(TreeView& view, Receiver receiver = Receiver::assistiveTechnology());

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TreeViewAccessible* tree() const;
    void announceRows();
    void announceSelection();
    void announceFocus();
    void announceReadOnly();
    void announceOfRow(NodeID id, QAccessible::Event kind);
    void announceState(NodeID id, QAccessible::State changed);

    TreeView& view_;
    const Receiver receiver_;
    // As they were told last.
    std::optional<std::int64_t> announcedRevision_;
    int announcedCount_ = 0;
    /// The selected node that had a row.
    std::optional<NodeID> announcedSelection_;
};

} // namespace quelm
