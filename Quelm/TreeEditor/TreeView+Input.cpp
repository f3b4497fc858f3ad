#include "Quelm/Foundation/ToolTipText.h"
#include "Quelm/TreeEditor/KindPresentation.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

constexpr int turnMilliseconds = 120;

/// The angle of one notch of a wheel, in the eighths of a degree that events count.
constexpr double notch = QWheelEvent::DefaultDeltasPerStep;

/// Modifiers that mean something; those of the keypad do not.
Qt::KeyboardModifiers meaningfulModifiers(const QInputEvent& event) {
    return event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

} // namespace

void TreeView::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = meaningfulModifiers(*event);
    const bool isPlain = modifiers == Qt::NoModifier;
    const bool isAlternate = modifiers == Qt::AltModifier;
    bool isHandled = false;
    if (event->key() == Qt::Key_Right && (isPlain || isAlternate))
        isHandled = expandOrScrollRight(isAlternate);
    else if (event->key() == Qt::Key_Left && (isPlain || isAlternate))
        isHandled = collapseOrScrollLeft();
    else if (isPlain)
        isHandled = moveSelection(event);
    event->setAccepted(isHandled);
}

bool TreeView::moveSelection(QKeyEvent* event) {
    if (!hasRows())
        return false;
    const std::int64_t last = editor_.outline().rowCount() - 1;
    const std::int64_t page = std::max<std::int64_t>(1, viewport()->height() / style_.rowHeight - 1);
    const std::int64_t near = rowNearSelection().value_or(0);
    // With the selection out of sight in a collapsed container, the first arrow comes back to what can be seen.
    const std::int64_t step = selectedRow() ? 1 : 0;

    std::int64_t row = near;
    switch (event->key()) {
    case Qt::Key_Up:
        row = near - step;
        break;
    case Qt::Key_Down:
        row = near + step;
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
    while (tree && node && node->raw < tree->storedNodeCount()) {
        if (const auto row = editor_.outline().index(*node))
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

void TreeView::revealHorizontally(std::int64_t row) {
    includeVisibleDepths();
    const std::int64_t start = editor_.outline().rowDepth(row) * style_.indentation;
    const std::int64_t length = style_.contentInset + style_.leastContentWidth;
    // A narrow window shows the start of the row rather than its end.
    horizontal_.reveal(start, std::min<std::int64_t>(length, viewport()->width()));
}

bool TreeView::expandOrScrollRight(bool recursive) {
    const std::optional<NodeID> selection = editor_.selection();
    if (editor_.expandSelection(recursive)) {
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

void TreeView::startTurn(NodeID id) {
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    chevron_.turn(id, editor_.outline().expanded().contains(id), isAnimated ? turnMilliseconds : 0);
}

void TreeView::mousePressEvent(QMouseEvent* event) {
    press(event);
}

void TreeView::mouseDoubleClickEvent(QMouseEvent* event) {
    // The second of two quick clicks is a click like any other.
    press(event);
}

void TreeView::press(QMouseEvent* event) {
    const auto row = rowAt(event->position().toPoint());
    if (!row || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const NodeID id = editor_.outline().rowID(*row);
    if (rowView(*row).isOnChevron(event->position())) {
        // Window managers often keep clicks with Alt to themselves.
        const bool isRecursive = event->modifiers() & (Qt::AltModifier | Qt::ShiftModifier);
        editor_.toggleExpansion(id, isRecursive);
        startTurn(id);
    } else {
        editor_.select(id);
    }
    event->accept();
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
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = toolTipAt(help->pos());
    if (text.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    const auto row = rowAt(help->pos());
    const TreeRowView view = rowView(*row);
    QToolTip::showText(help->globalPos(), text, viewport(), view.rect(*view.partAt(help->pos())).toAlignedRect());
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
        return kindName(tree.kind(id));
    if (part == TreeRowPart::duplicateMark)
        return tr("Clave duplicada");
    if (!part || !view.isShortened(*part))
        return {};
    if (part == TreeRowPart::label)
        return toolTipText(tree.key(id));
    return isContainer(tree.kind(id)) ? QString() : toolTipText(tree.scalar(id));
}

} // namespace quelm
