#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONScalar.h"
#include "Quelm/Documents/ParseErrorText.h"
#include "Quelm/Foundation/Pasteboard.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/Foundation/WaitCursor.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <new>
#include <stdexcept>

namespace quelm {

namespace {

// What takes about 200 ms: bytes to parse and copy, and nodes to copy.
constexpr std::int64_t longPaste = 60'000'000;
constexpr std::int64_t longCopy = 4'000'000;

} // namespace

// Editing in place.

void TreeEditor::activate(std::optional<Field> field) {
    const std::optional<NodeID> selection = editableSelection();
    if (!selection)
        return;
    const NodeKind kind = tree()->kind(*selection);
    const bool hasValue = !isContainer(kind) && kind != NodeKind::null;
    if (field.value_or(hasValue ? Field::value : Field::key) == Field::key) {
        if (tree()->isObjectMember(*selection))
            beginEditing({*selection, Field::key});
    } else if (kind == NodeKind::bool_) {
        toggleBoolean(*selection);
    } else {
        beginEditing({*selection, Field::value});
    }
}

std::optional<NodeID> TreeEditor::editableSelection() const {
    return isReadOnly_ ? std::nullopt : linkedSelection();
}

void TreeEditor::handInField() {
    if (editing_)
        Q_EMIT willEdit();
}

void TreeEditor::beginEditing(Editing editing) {
    if (editing_ != editing)
        handInField();
    if (!isLinked(editing.id))
        return;
    // The selection may be out of sight in a collapsed container.
    if (!outline_.index(editing.id)) {
        changeRows([&](const JSONTree& tree) { outline_.reveal(editing.id, tree); });
        if (!outline_.index(editing.id))
            return;
    }
    setEditing(editing);
}

void TreeEditor::toggleBoolean(NodeID id) {
    const bool isTrue = tree()->scalar(id) == "true";
    applyEdit(TreeEdit::setValue(id, NodeKind::bool_, std::string_view(isTrue ? "false" : "true")), tr("Editar valor"));
}

void TreeEditor::commit(const SharedText& text, Editing editing) {
    // While the editor is read-only nothing is being edited.
    if (editing_ != editing)
        return;
    setEditing(std::nullopt);
    if (!isLinked(editing.id))
        return;
    if (const std::optional<TreeEdit> edit = editOf(text, editing))
        applyEdit(*edit, editing.field == Field::key ? tr("Renombrar clave") : tr("Editar valor"));
}

std::optional<TreeEdit> TreeEditor::editOf(const SharedText& text, Editing editing) const {
    if (editing.field == Field::key) {
        if (text.view() == tree()->key(editing.id))
            return std::nullopt;
        return TreeEdit::setKey(editing.id, text);
    }
    const NodeKind kind = tree()->kind(editing.id);
    if (text.view() == tree()->scalar(editing.id) || !JSONScalar::isValid(text.view(), kind))
        return std::nullopt;
    return TreeEdit::setValue(editing.id, kind, text);
}

void TreeEditor::applyEdit(const TreeEdit& edit, const QString& actionName) {
    perform(actionName, [&edit](JSONTree&) { return TreeChange{.edits = {edit}, .focus = edit.id()}; });
}

// Changes of the tree.

void TreeEditor::insert(bool asChild) {
    const std::optional<NodeID> selection = editableSelection();
    if (!selection)
        return;
    const auto focus = perform(tr("Insertar"), [&](JSONTree& tree) { return tree.insertChange(*selection, asChild); });
    if (focus && isLinked(*focus))
        setEditing(Editing{*focus, tree()->isObjectMember(*focus) ? Field::key : Field::value});
}

void TreeEditor::duplicate() {
    const std::optional<NodeID> selection = editableSelection();
    if (!selection)
        return;
    const WaitCursor waiting(tree()->nodeCount() > longCopy && tree()->subtreeSize(*selection) > longCopy);
    perform(tr("Duplicar"), [&](JSONTree& tree) { return tree.duplicateChange(*selection); });
}

void TreeEditor::move(std::int64_t offset) {
    if (const std::optional<NodeID> selection = editableSelection())
        perform(tr("Mover"), [&](JSONTree& tree) { return tree.moveChange(*selection, offset); });
}

void TreeEditor::remove() {
    if (const std::optional<NodeID> selection = editableSelection())
        perform(tr("Eliminar"), [&](JSONTree& tree) { return tree.removeChange(*selection); });
}

void TreeEditor::changeType(NodeID id, NodeKind kind) {
    if (!isReadOnly_ && isLinked(id))
        perform(tr("Cambiar tipo"), [&](JSONTree& tree) { return tree.kindChange(id, kind); });
}

void TreeEditor::pasteJSON() {
    const std::optional<NodeID> selection = editableSelection();
    if (!selection)
        return;
    attempt([&] {
        if (const std::optional<TextRope> text = pasteboard_.string())
            paste(*text, *selection);
    });
}

void TreeEditor::paste(const TextRope& text, NodeID target) {
    const WaitCursor waiting(text.byteCount() > longPaste);
    const std::expected<JSONTree, JSONParseError> pasted = JSONParser::parse(text);
    if (!pasted) {
        report(tr("El portapapeles no contiene JSON válido.\n") + parseErrorText(pasted.error()));
        return;
    }
    const bool inside = isContainer(tree()->kind(target));
    perform(tr("Pegar JSON"), [&](JSONTree& tree) { return tree.pasteChange(*pasted, target, inside); });
}

/// Returns the focus of the change, if there was one.
std::optional<NodeID> TreeEditor::perform(const QString& actionName, const Prepare& prepare) {
    handInField();
    std::optional<JSONDocument::AppliedTreeChange> applied;
    const bool isDone = attempt([&] {
        applied = tree() && !isReadOnly_ ? document_->applyTreeChange(prepare) : std::nullopt;
        if (applied)
            record(applied->change.edits, std::move(applied->inverse), actionName, applied->change.focus);
    });
    // A change without a step of its own makes those before it lead astray.
    if (!isDone && applied)
        dropSteps();
    return isDone && applied ? applied->change.focus : std::nullopt;
}

void TreeEditor::record(std::span<const TreeEdit> edits, std::vector<TreeEdit> inverse, const QString& actionName,
                        std::optional<NodeID> focus) {
    const JSONTree* tree = this->tree();
    if (!tree)
        return;
    std::vector<TreeEdit> touched(edits.begin(), edits.end());
    touched.insert(touched.end(), inverse.begin(), inverse.end());
    outline_.update(touched, *tree);
    noteRowsAreCurrent();

    const std::optional<NodeID> selectionBefore = selection_;
    if (focus && tree->parent(*focus)) {
        if (!outline_.index(*focus))
            outline_.reveal(*focus, *tree);
        selection_ = focus;
    }
    const std::optional<Editing> editingBefore = editing_;
    if (editing_ && !isLinked(editing_->id))
        editing_ = std::nullopt;
    registerStep(std::move(inverse), actionName);

    Q_EMIT outlineChanged();
    if (editing_ != editingBefore)
        Q_EMIT editingChanged();
    if (selection_ != selectionBefore)
        Q_EMIT selectionChanged();
    Q_EMIT didEdit();
}

void TreeEditor::registerStep(std::vector<TreeEdit> inverse, const QString& actionName) {
    if (!undoManager_)
        return;
    undoManager_->registerUndo<TreeEditor>(
        this, [inverse = std::move(inverse), actionName](TreeEditor& editor) { editor.replay(inverse, actionName); });
    undoManager_->setActionName(actionName);
}

void TreeEditor::replay(std::span<const TreeEdit> edits, const QString& actionName) {
    if (!tree())
        return;
    std::optional<NodeID> focus;
    for (const TreeEdit& edit : edits) {
        if (!edit.asRemove()) {
            focus = edit.id();
            break;
        }
    }
    // The steps before one that could not be replayed name places of a tree that there never was.
    if (!attempt([&] { record(edits, document_->applyTreeEdits(edits), actionName, focus); }))
        dropSteps();
}

void TreeEditor::dropSteps() {
    if (undoManager_)
        undoManager_->removeAllActions();
}

bool TreeEditor::attempt(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        recover();
        report(tr("No hay memoria suficiente para esta operación.\n"));
    } catch (const std::length_error&) {
        recover();
        report(tr("El documento no admite más nodos ni más texto.\n"));
    }
    return false;
}

void TreeEditor::recover() {
    // What is being edited stays: its text would be lost.
    if (tree() && !hasCurrentRows())
        makeRowsAnew(editing_);
}

void TreeEditor::report(const QString& message) const {
    if (onError)
        onError(message);
}

} // namespace quelm
