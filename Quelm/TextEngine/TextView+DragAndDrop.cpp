#include "Quelm/Foundation/TextMimeData.h"
#include "Quelm/TextEngine/TextView.h"

#include <QDrag>
#include <QDragMoveEvent>
#include <QPointer>

namespace quelm {

void TextView::startDrag() {
    pressOnSelection_.reset();
    const QPointer<TextView> self(this);
    const TextRope text = storage_->text();
    const TextSelection selection = editing_->selection();
    auto* data = new TextMimeData(storage_->text(selectedRange()));
    data->setOwner(*this);
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    const Qt::DropActions offered = isReadOnly() ? Qt::CopyAction : Qt::CopyAction | Qt::MoveAction;
    const Qt::DropAction done = drag->exec(offered, isReadOnly() ? Qt::CopyAction : Qt::MoveAction);
    if (!self)
        return;
    setDropPlace(std::nullopt);
    // Within this view, the drop has done it all. Elsewhere a drag takes its time: what is selected by then may be
    // another text.
    const bool isSame = storage_->text().isSameValue(text) && editing_->selection() == selection;
    if (done == Qt::MoveAction && drag->target() != viewport() && isSame)
        editing_->cut();
}

bool TextView::canInsert(const QMimeData& data) const {
    // Files are for the window to open.
    return !isReadOnly() && data.hasText() && !data.hasUrls();
}

void TextView::dragEnterEvent(QDragEnterEvent* event) {
    if (!canInsert(*event->mimeData()))
        return event->ignore();
    event->acceptProposedAction();
}

void TextView::dragMoveEvent(QDragMoveEvent* event) {
    if (!canInsert(*event->mimeData()))
        return event->ignore();
    lastMousePlace_ = event->position().toPoint();
    setDropPlace(placeAt(event->position()));
    // Beside the edges it scrolls: outside of them, no event tells where the mouse is.
    const int edge = std::min(layout_->font().rowHeight(), viewport()->height() / 4);
    dragScrolling_.follow(lastMousePlace_, viewport()->rect().adjusted(edge, edge, -edge, -edge));
    event->acceptProposedAction();
}

void TextView::dragLeaveEvent(QDragLeaveEvent*) {
    dragScrolling_.stop();
    setDropPlace(std::nullopt);
}

void TextView::dropEvent(QDropEvent* event) {
    dragScrolling_.stop();
    setDropPlace(std::nullopt);
    if (!canInsert(*event->mimeData()))
        return event->ignore();
    event->acceptProposedAction();
    drop(*event->mimeData(), event->dropAction(), placeAt(event->position()));
    setFocus(Qt::MouseFocusReason);
}

void TextView::drop(const QMimeData& data, Qt::DropAction action, qint64 offset) {
    finishComposing();
    const TextRange selected = selectedRange();
    const auto* own = qobject_cast<const TextMimeData*>(&data);
    if (!own || !own->isOwnedBy(*this) || action != Qt::MoveAction) {
        const QString text = data.text();
        editing_->setSelection(TextSelection::at(offset));
        editing_->paste(text);
    } else if (offset <= selected.location || offset >= selected.end()) {
        editing_->move(selected, offset);
    }
}

void TextView::setDropPlace(std::optional<qint64> offset) {
    if (offset == dropPlace_)
        return;
    dropPlace_ = offset;
    viewport()->update();
}

} // namespace quelm
