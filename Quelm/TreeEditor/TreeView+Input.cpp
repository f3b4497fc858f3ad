#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>
#include <chrono>

namespace quelm {

namespace {

using std::chrono::milliseconds;

/// Modifiers that mean something; those of the keypad do not.
Qt::KeyboardModifiers meaningfulModifiers(const QInputEvent& event) {
    return event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

/// The text that a key types; empty for keys that do something else, and with modifiers that make it a command.
QString typedText(const QKeyEvent& event) {
    if (meaningfulModifiers(event) & ~Qt::KeyboardModifiers(Qt::ShiftModifier))
        return {};
    const QList<uint> characters = event.text().toUcs4();
    const bool isPrintable = std::ranges::all_of(characters, [](uint character) { return QChar::isPrint(character); });
    return isPrintable ? event.text() : QString();
}

} // namespace

void TreeView::keyPressEvent(QKeyEvent* event) {
    if (typeAhead(*event))
        return event->accept();
    const bool isHandled = handleKey(*event);
    if (isHandled || event->key() == Qt::Key_Escape)
        typeAhead_.cancel();
    event->setAccepted(isHandled);
}

bool TreeView::typeAhead(const QKeyEvent& event) {
    const QString text = typedText(event);
    if (text.isEmpty() || !hasRows())
        return false;
    typeAhead_.setInterval(std::max(milliseconds(1000), milliseconds(QApplication::keyboardInputInterval())));
    typeAhead_.type(text, selectedRow(), milliseconds(clock_.elapsed()));
    return true;
}

bool TreeView::handleKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = meaningfulModifiers(event);
    switch (event.key()) {
    case Qt::Key_Right:
        return expandOrScrollRight(modifiers & Qt::AltModifier);
    case Qt::Key_Left:
        return collapseOrScrollLeft();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return activate();
    case Qt::Key_F10:
        return modifiers == Qt::ShiftModifier && showSelectionMenu();
    default:
        break;
    }
    // One row is selected at a time: keys that extend a selection elsewhere, or go to an end, move it.
    const bool isEnd = event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
    if (modifiers == Qt::NoModifier)
        return handlePlainKey(event);
    return (modifiers == Qt::ShiftModifier || (modifiers == Qt::ControlModifier && isEnd)) &&
           moveSelection(event.key());
}

bool TreeView::handlePlainKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_F2:
        return activate();
    case Qt::Key_Delete:
        editor_.remove();
        return true;
    case Qt::Key_Menu:
        return showSelectionMenu();
    default:
        return moveSelection(event.key());
    }
}

bool TreeView::activate() {
    if (editor_.editing())
        return false;
    editor_.activate();
    return true;
}

bool TreeView::moveSelection(int key) {
    if (!hasRows())
        return false;
    const std::int64_t last = editor_.outline().rowCount() - 1;
    const std::int64_t page = std::max<std::int64_t>(1, viewport()->height() / style_.rowHeight - 1);
    const std::optional<std::int64_t> nearby = rowNearSelection();
    const std::int64_t near = nearby.value_or(lastSelectedRow_);
    // With the selection out of sight in a collapsed container, the first arrow comes back to what can be seen. Where
    // the selected node is gone, the row in its place is the one after it.
    const std::int64_t up = selectedRow() || !nearby ? 1 : 0;
    const std::int64_t down = selectedRow() ? 1 : 0;

    std::int64_t row = near;
    switch (key) {
    case Qt::Key_Up:
        row = near - up;
        break;
    case Qt::Key_Down:
        row = near + down;
        break;
    case Qt::Key_PageUp:
        row = near - page;
        break;
    case Qt::Key_PageDown:
        row = near + page;
        break;
    case Qt::Key_Home:
        row = 0;
        break;
    case Qt::Key_End:
        row = last;
        break;
    default:
        return false;
    }
    selectRow(std::clamp<std::int64_t>(row, 0, last));
    return true;
}

std::optional<std::int64_t> TreeView::rowNearSelection() const {
    const JSONTree* tree = editor_.tree();
    auto node = editor_.selection();
    while (tree && node && node->raw >= 0 && node->raw < tree->storedNodeCount()) {
        if (const auto row = rowOf(node))
            return row;
        node = tree->parent(*node);
    }
    return std::nullopt;
}

void TreeView::selectRow(std::int64_t row) {
    editor_.select(editor_.outline().rowID(row));
    scrollToRow(row);
    revealHorizontally(row);
}

bool TreeView::expandOrScrollRight(bool recursive) {
    const std::optional<NodeID> selection = editor_.selection();
    const bool wasExpanded = selection && editor_.outline().expanded().contains(*selection);
    if (editor_.expandSelection(recursive)) {
        if (!wasExpanded)
            startTurn(*selection);
        return true;
    }
    const std::int64_t before = horizontal_.position();
    horizontal_.scrollBy(horizontalStep());
    return horizontal_.position() != before;
}

bool TreeView::collapseOrScrollLeft() {
    const std::optional<NodeID> selection = editor_.selection();
    if (editor_.collapseOrSelectParent()) {
        if (editor_.selection() == selection)
            startTurn(*selection);
        else if (const auto row = rowNearSelection())
            selectRow(*row);
        return true;
    }
    const std::int64_t before = horizontal_.position();
    horizontal_.scrollBy(-horizontalStep());
    return horizontal_.position() != before;
}

} // namespace quelm
