#pragma once

#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "JSONCore/TreeOutline.h"
#include "Quelm/Documents/JSONDocument.h"
#include "TextCore/SharedText.h"
#include "TextCore/TextRope.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace quelm {

class Pasteboard;
class UndoManager;

/// The controller of a window's tree mode: the visible outline of the document's tree, the selected node, the field
/// that is edited in place, and every operation on them. It has no widgets.
///
/// Operations do nothing while the document shows its text or has no tree. An operation on a node, the selection as a
/// rule, does nothing while there is none or it is not part of the document any more, as after undoing the insertion
/// that selected it. An operation that does not apply (to remove the top-level value, to move the first member up) does
/// nothing either. Whatever changes the document is one step of the undo manager, and leaves rows, selection and field
/// true to the tree before anybody hears of it. What an edit costs follows what it changes, not the number of rows.
///
/// For the main thread; reaching it from another one is a programming error. What is connected to its signals, or to
/// those of the document, must neither destroy the editor nor edit: it may ask for that from the event loop.
class TreeEditor : public QObject {
    Q_OBJECT

public:
    enum class Field : std::uint8_t { key, value };

    /// What is edited in place.
    struct Editing {
        NodeID id;
        Field field;
        friend bool operator==(const Editing&, const Editing&) = default;
    };

    /// An empty outline and no selection, until the first `reload`. The pasteboard must outlive the editor.
    explicit TreeEditor(std::shared_ptr<JSONDocument> document);
    TreeEditor(std::shared_ptr<JSONDocument> document, Pasteboard& pasteboard);

    JSONDocument& document() const { return *document_; }

    /// Held weakly; without one (as at first) edits are made and cannot be undone.
    void setUndoManager(UndoManager* manager);
    UndoManager* undoManager() const;

    /// Is given what the user should be told when an operation fails for another reason than that it does not apply: a
    /// first line, a line feed, and the details.
    std::function<void(const QString& message)> onError;

    /// The document's tree while the document is shown as one, else null. Valid until the content changes.
    const JSONTree* tree() const;

    const TreeOutline& outline() const { return outline_; }

    /// The revision of the document whose rows the outline has; absent while it has not those of the tree as it is.
    std::optional<std::int64_t> outlineRevision() const { return outlineRevision_; }
    /// Whether the outline has rows, those of the tree as it is now. Not so before the first `reload`, and for whoever
    /// hears of a change of the content before the editor has followed it.
    bool hasCurrentRows() const;

    std::optional<NodeID> selection() const { return selection_; }
    void setSelection(std::optional<NodeID> selection);
    void select(NodeID id) { setSelection(id); }

    /// Whether the node is part of the document: stored, and linked below the holder. O(depth).
    bool isLinked(NodeID id) const;

    /// While it is read-only (not so at first) nothing that would change the document, nor opening a field, does
    /// anything; selecting, expanding and copying go on. Steps can be undone and done again nonetheless, as long as
    /// their manager lets them. A field that is open then is cancelled: whoever sets it has it handed in before.
    bool isReadOnly() const { return isReadOnly_; }
    void setReadOnly(bool isReadOnly);

    // Rows.

    /// Makes the rows anew with the top-level value open and drops the field being edited; a selection that has no row
    /// afterwards goes to the top-level value. Happens by itself whenever the document's revision changes. O(rows).
    void reload();

    /// Rows that were made elsewhere, with the node to be selected among them.
    struct PreparedRows {
        TreeOutline outline;
        NodeID selection;
    };
    /// Rows for the tree that the document is about to get: the next `reload` takes them rather than make any, in O(1),
    /// and they must be right by then. Absent takes those back that were not taken.
    void setPreparedRows(std::optional<PreparedRows> rows);

    /// The node to the opposite state, with all containers below it when `recursive`.
    void toggleExpansion(NodeID id, bool recursive);

    /// Whether there was something to expand: an expanded container only counts when `recursive`.
    bool expandSelection(bool recursive);

    /// Collapses the selected container, or goes to the parent of what is not expanded; false at the top-level value.
    bool collapseOrSelectParent();

    /// Every container; collapsing leaves the top-level value open. O(nodes).
    void setAllExpanded(bool expanded);

    // Editing in place.

    std::optional<Editing> editing() const { return editing_; }
    /// Absent cancels: what was being edited stays as it is in the document.
    void setEditing(std::optional<Editing> editing);

    /// Begins to edit the selection's key or value, or toggles it if it is a Boolean ("Editar valor"). Without a field
    /// whatever suits the node: the key of a container or null, where it has one, else the value.
    void activate(std::optional<Field> field = std::nullopt);

    /// What a field says when it is done: "Editar valor" or "Renombrar clave". Nothing when `editing` is not what is
    /// being edited (any more); a value that is not valid for its kind, or the text that was there, changes nothing.
    void commit(const SharedText& text, Editing editing);

    // Changes of the tree, each one step.

    /// "Insertar": an empty string after the selection, or as its last child, whose key or value is then edited.
    void insert(bool asChild);
    /// "Duplicar".
    void duplicate();
    /// "Mover": by that many places among its siblings.
    void move(std::int64_t offset);
    /// "Eliminar".
    void remove();
    /// "Cambiar tipo": of that node, whatever is selected.
    void changeType(NodeID id, NodeKind kind);
    /// "Pegar JSON": the pasteboard's text as JSON, into the selected container or after the selected scalar. Text that
    /// is not JSON is told to `onError`.
    void pasteJSON();

    // Copying.

    /// The path of the selection, or that of the top-level value ("$") without one.
    void copyPath();
    /// The JSON of the selected node; returns whether it is on the pasteboard. O(its nodes).
    bool copyJSON(const JSONStyle& style);

Q_SIGNALS:
    /// An operation is about to change the tree, to collapse rows, or to open another field, while a field is open:
    /// whoever shows the field hands in its text.
    void willEdit();
    void outlineChanged();
    void selectionChanged();
    void editingChanged();
    void isReadOnlyChanged();
    /// After an edit, an undo or a redo, when everything above is announced.
    void didEdit();

private:
    using Prepare = std::function<std::optional<TreeChange>(JSONTree&)>;

    std::optional<NodeID> linkedSelection() const;
    /// The same; absent while nothing may be changed.
    std::optional<NodeID> editableSelection() const;
    void setExpanded(NodeID id, bool expanded, bool recursive);
    void changeRows(const std::function<void(const JSONTree&)>& change);
    void handInField();
    void beginEditing(Editing editing);
    void toggleBoolean(NodeID id);
    std::optional<TreeEdit> editOf(const SharedText& text, Editing editing) const;
    void applyEdit(const TreeEdit& edit, const QString& actionName);
    void paste(const TextRope& text, NodeID target);
    std::optional<NodeID> perform(const QString& actionName, const Prepare& prepare);
    void record(std::span<const TreeEdit> edits, std::vector<TreeEdit> inverse, const QString& actionName,
                std::optional<NodeID> focus);
    void registerStep(std::vector<TreeEdit> inverse, const QString& actionName);
    void dropSteps();
    void replay(std::span<const TreeEdit> edits, const QString& actionName);
    /// Does work that may need more memory or more room in the tree than there is, which is reported. Returns whether
    /// it was done.
    bool attempt(const std::function<void()>& work);
    /// After a failure that came when the tree or the rows had begun to change.
    void recover();
    bool makeRowsAnew(std::optional<Editing> editing);
    void takeRows(PreparedRows rows);
    bool rebuildRows();
    void noteRowsAreCurrent();
    void report(const QString& message) const;

    const std::shared_ptr<JSONDocument> document_;
    Pasteboard& pasteboard_;
    QPointer<UndoManager> undoManager_;
    TreeOutline outline_;
    std::optional<std::int64_t> outlineRevision_;
    std::optional<PreparedRows> preparedRows_;
    std::optional<NodeID> selection_;
    std::optional<Editing> editing_;
    bool isReadOnly_ = false;
};

} // namespace quelm
