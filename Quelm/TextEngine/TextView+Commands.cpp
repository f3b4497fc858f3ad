#include "Quelm/Foundation/TextMimeData.h"
#include "Quelm/TextEngine/TextView.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>

namespace quelm {

namespace {

/// The longest selection that becomes the primary one by being made: whoever watches that one asks for its text.
constexpr qint64 longestPrimarySelection = 10'000'000;

/// A title with the key that does the same, which is shown and not bound once more.
QString titled(const QString& title, QKeySequence::StandardKey key) {
    return title + u'\t' + QKeySequence(key).toString(QKeySequence::NativeText);
}

} // namespace

bool TextView::canCut() const {
    return canCopy() && !isReadOnly();
}

bool TextView::canCopy() const {
    return !editing_->selection().isEmpty();
}

bool TextView::canPaste() const {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return !isReadOnly() && data && data->hasText();
}

void TextView::cut() {
    finishComposing();
    if (!canCut())
        return;
    copy();
    editing_->cut();
}

void TextView::copy() {
    if (canCopy())
        QGuiApplication::clipboard()->setMimeData(new TextMimeData(storage_->text(selectedRange())));
}

void TextView::paste() {
    finishComposing();
    if (!canPaste())
        return;
    // What was copied here needs no conversion, whatever its length.
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (const auto* own = qobject_cast<const TextMimeData*>(data))
        editing_->paste(own->rope());
    else
        editing_->paste(data->text());
}

void TextView::deleteSelection() {
    finishComposing();
    if (canCut())
        editing_->deleteSelectionOr(editing_->selection().caret);
}

void TextView::selectAll() {
    finishComposing();
    editing_->setSelection({0, storage_->length()});
    publishPrimarySelection();
}

void TextView::undo() {
    finishComposing();
    if (UndoManager* manager = editing_->undoManager(); manager && !isReadOnly())
        manager->undo();
}

void TextView::redo() {
    finishComposing();
    if (UndoManager* manager = editing_->undoManager(); manager && !isReadOnly())
        manager->redo();
}

void TextView::publishPrimarySelection() const {
    QClipboard* clipboard = QGuiApplication::clipboard();
    const TextRange range = selectedRange();
    if (clipboard->supportsSelection() && !range.isEmpty() && range.length <= longestPrimarySelection)
        clipboard->setMimeData(new TextMimeData(storage_->text(range)), QClipboard::Selection);
}

QMenu* TextView::makeContextMenu() {
    const UndoManager* manager = isReadOnly() ? nullptr : editing_->undoManager();
    auto* menu = new QMenu(this);
    const auto add = [this, menu](const QString& title, void (TextView::*perform)(), bool isEnabled) {
        QAction* action = menu->addAction(title, this, perform);
        action->setEnabled(isEnabled);
        return action;
    };
    const auto addEdit = [this, add](const QString& title, void (TextView::*perform)(), bool isEnabled) {
        QAction* action = add(title, perform, isEnabled);
        connect(this, &TextView::readOnlyDidChange, action, [this, action] {
            if (isReadOnly())
                action->setEnabled(false);
        });
    };
    addEdit(titled(manager ? manager->undoMenuItemTitle() : tr("Deshacer"), QKeySequence::Undo), &TextView::undo,
            manager && manager->canUndo());
    addEdit(titled(manager ? manager->redoMenuItemTitle() : tr("Rehacer"), QKeySequence::Redo), &TextView::redo,
            manager && manager->canRedo());
    menu->addSeparator();
    addEdit(titled(tr("Cortar"), QKeySequence::Cut), &TextView::cut, canCut());
    add(titled(tr("Copiar"), QKeySequence::Copy), &TextView::copy, canCopy());
    addEdit(titled(tr("Pegar"), QKeySequence::Paste), &TextView::paste, canPaste());
    addEdit(tr("Eliminar"), &TextView::deleteSelection, canCut());
    menu->addSeparator();
    add(titled(tr("Seleccionar todo"), QKeySequence::SelectAll), &TextView::selectAll, storage_->length() > 0);
    return menu;
}

void TextView::contextMenuEvent(QContextMenuEvent* event) {
    finishComposing();
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        revealCaret();
        place = viewport()->mapToGlobal(caretRectangle().bottomLeft());
    } else if (!isOnSelection(event->pos())) {
        editing_->setSelection(TextSelection::at(placeAt(event->pos())));
    }
    QMenu* menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
    event->accept();
}

} // namespace quelm
