#include "Quelm/Foundation/ToolTipText.h"
#include "Quelm/TreeEditor/KindPresentation.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QToolTip>
#include <QWheelEvent>

#include <cmath>

namespace quelm {

namespace {

constexpr int turnMilliseconds = 120;

/// The angle of one notch of a wheel, in the eighths of a degree that events count.
constexpr double notch = QWheelEvent::DefaultDeltasPerStep;

} // namespace

void TreeView::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(press(*event) != Target::nothing);
}

void TreeView::mouseDoubleClickEvent(QMouseEvent* event) {
    // On what is clicked by itself, the second of two quick clicks is a click like any other.
    const Target target = press(*event);
    event->setAccepted(target != Target::nothing);
    if (target == Target::row)
        editor_.activate();
}

TreeView::Target TreeView::press(const QMouseEvent& event) {
    typeAhead_.cancel();
    finishEditing();
    const auto row = rowAt(event.position().toPoint());
    if (!row || event.button() != Qt::LeftButton)
        return Target::nothing;
    // What was clicked is known now: what happens to it may scroll the rows.
    const NodeID id = editor_.outline().rowID(*row);
    const bool isBadge = rowView(*row).partAt(event.position()) == TreeRowPart::badge;
    if (rowView(*row).isOnChevron(event.position())) {
        // Window managers often keep clicks with Alt to themselves.
        const bool isRecursive = event.modifiers() & (Qt::AltModifier | Qt::ShiftModifier);
        editor_.toggleExpansion(id, isRecursive);
        startTurn(id);
        return Target::chevron;
    }
    editor_.select(id);
    if (!isBadge)
        return Target::row;
    showKindMenu(*row);
    return Target::badge;
}

void TreeView::startTurn(NodeID id) {
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    chevron_.turn(id, editor_.outline().expanded().contains(id), isAnimated ? turnMilliseconds : 0);
}

void TreeView::mouseMoveEvent(QMouseEvent* event) {
    setPointer(event->position().toPoint());
    event->ignore();
}

void TreeView::setPointer(std::optional<QPoint> place) {
    pointer_ = place;
    updateHover();
}

void TreeView::updateHover() {
    std::optional<std::int64_t> hovered;
    if (const auto row = pointer_ ? rowAt(*pointer_) : std::nullopt) {
        if (rowView(*row).partAt(*pointer_) == TreeRowPart::badge)
            hovered = row;
    }
    if (hovered == hoveredBadge_)
        return;
    repaintRow(std::exchange(hoveredBadge_, hovered));
    repaintRow(hovered);
    if (hovered)
        viewport()->setCursor(Qt::PointingHandCursor);
    else
        viewport()->unsetCursor();
}

void TreeView::wheelEvent(QWheelEvent* event) {
    QPointF distance = event->pixelDelta();
    if (distance.isNull())
        distance = QPointF(event->angleDelta()) / notch * QApplication::wheelScrollLines() * style_.rowHeight;
    if (event->modifiers() & Qt::ShiftModifier && distance.x() == 0)
        distance = distance.transposed();

    if (event->phase() == Qt::ScrollBegin)
        wheelRemainder_ = {};
    wheelRemainder_ += distance;
    const QPointF whole(std::trunc(wheelRemainder_.x()), std::trunc(wheelRemainder_.y()));
    wheelRemainder_ -= whole;
    horizontal_.scrollBy(-static_cast<std::int64_t>(whole.x()));
    vertical_.scrollBy(-static_cast<std::int64_t>(whole.y()));
    event->accept();
}

bool TreeView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave)
        setPointer(std::nullopt);
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (!showToolTip(help->pos(), help->globalPos())) {
        QToolTip::hideText();
        event->ignore();
    }
    return true;
}

bool TreeView::showToolTip(const QPoint& place, const QPoint& globalPlace) {
    const QString text = toolTipAt(place);
    if (text.isEmpty())
        return false;
    const TreeRowView view = rowView(*rowAt(place));
    QToolTip::showText(globalPlace, text, viewport(), view.rect(*view.partAt(place)).toAlignedRect());
    return true;
}

QString TreeView::toolTipAt(const QPoint& place) const {
    const auto row = rowAt(place);
    if (!row)
        return {};
    const TreeRowView view = rowView(*row);
    const auto part = view.partAt(place);
    const NodeID id = editor_.outline().rowID(*row);
    const JSONTree& tree = *editor_.tree();
    if (part == TreeRowPart::badge)
        return kindName(tree.kind(id)) + tr(" · clic para cambiar el tipo");
    if (part == TreeRowPart::duplicateMark)
        return tr("Clave duplicada");
    if (!part || !view.isShortened(*part))
        return {};
    if (part == TreeRowPart::label)
        return toolTipText(tree.key(id));
    return isContainer(tree.kind(id)) ? QString() : toolTipText(tree.scalar(id));
}

} // namespace quelm
