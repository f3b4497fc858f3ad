#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/NodeMenu.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QMenu>

namespace quelm {

void TreeView::contextMenuEvent(QContextMenuEvent* event) {
    typeAhead_.cancel();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        showSelectionMenu();
    } else {
        finishEditing();
        if (const auto row = rowAt(event->pos()))
            showNodeMenu(*row, event->pos());
    }
    event->accept();
}

bool TreeView::showSelectionMenu() {
    const auto row = selectedRow();
    // The key may be reported in two ways, one after the other.
    if (!row || menu_)
        return true;
    finishEditing();
    revealSelection();
    const int left = partArea(*row, TreeRowPart::badge).toRect().left();
    showNodeMenu(*row, QPoint(left, rowArea(*row)->bottom() + 1));
    return true;
}

void TreeView::showNodeMenu(std::int64_t row, const QPoint& place) {
    const NodeID id = editor_.outline().rowID(row);
    popUp(new NodeMenu(editor_, id, this), id, place);
}

void TreeView::showKindMenu(std::int64_t row) {
    const NodeID id = editor_.outline().rowID(row);
    auto* menu = new QMenu(this);
    addKindItems(*menu, editor_, editor_.tree()->kind(id), [this, id](NodeKind kind) { editor_.changeType(id, kind); });
    // In another content the same id may name another node.
    connect(&editor_.document(), &JSONDocument::revisionChanged, menu, &QWidget::close);
    connect(&editor_.document(), &JSONDocument::modeChanged, menu, &QWidget::close);
    const QRect badge = partArea(row, TreeRowPart::badge).toRect();
    popUp(menu, id, badge.bottomLeft() + QPoint(0, scaledPixels(2)));
}

void TreeView::popUp(QMenu* menu, NodeID id, const QPoint& place) {
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu_ = menu;
    menuNode_ = id;
    connect(menu, &QMenu::aboutToHide, this, [this, menu] {
        if (menu_ != menu)
            return;
        menu_ = nullptr;
        menuNode_ = std::nullopt;
        // What the pointer did over the menu, nobody has told the view.
        const QPoint pointer = viewport()->mapFromGlobal(QCursor::pos());
        setPointer(viewport()->rect().contains(pointer) ? std::optional(pointer) : std::nullopt);
        viewport()->update();
    });
    viewport()->update();
    menu->popup(viewport()->mapToGlobal(place));
}

} // namespace quelm
