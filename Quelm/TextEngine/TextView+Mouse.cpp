#include "Quelm/TextEngine/TextView.h"

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>

#include <cmath>

namespace quelm {

namespace {

bool isNear(const QPointF& first, const QPointF& second) {
    return (first - second).manhattanLength() < QApplication::startDragDistance();
}

} // namespace

// Places.

qint64 TextView::rowAt(const QPointF& place) const {
    return scrolling_->rowAt(static_cast<int>(std::floor(place.y())));
}

double TextView::xAt(const QPointF& place) const {
    return place.x() - scrolling_->left();
}

qint64 TextView::placeAt(const QPointF& place) const {
    return navigation().placeInRow(rowAt(place), xAt(place));
}

qint64 TextView::characterAt(const QPointF& place) const {
    return navigation().characterInRow(rowAt(place), xAt(place));
}

qint64 TextView::offsetAt(const QPoint& place) const {
    return placeAt(place);
}

bool TextView::isOnSelection(const QPointF& place) const {
    return selectedRange().contains(characterAt(place)) && !layout_->isBesideText(rowAt(place), xAt(place));
}

// Buttons.

void TextView::mousePressEvent(QMouseEvent* event) {
    const QPointF place = event->position();
    if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton)
        finishComposing();
    if (event->button() == Qt::MiddleButton)
        return pastePrimarySelection(place);
    if (event->button() != Qt::LeftButton)
        return;
    if (isThirdClick(place))
        beginSelecting(SelectionGranularity::line, place);
    else if (event->modifiers() & Qt::ShiftModifier)
        beginExtending(place);
    else if (isOnSelection(place))
        pressOnSelection_ = place;
    else
        beginSelecting(SelectionGranularity::character, place);
}

void TextView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    finishComposing();
    pressOnSelection_.reset();
    beginSelecting(SelectionGranularity::word, event->position());
    sinceDoubleClick_.start();
    doubleClickPlace_ = event->position();
}

void TextView::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    lastMousePlace_ = event->position().toPoint();
    if (pressOnSelection_) {
        if (!isNear(*pressOnSelection_, event->position()))
            startDrag();
        return;
    }
    if (!pressedUnit_)
        return;
    extendSelection(event->position());
    dragScrolling_.follow(lastMousePlace_, viewport()->rect());
}

void TextView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    // A click on the selection that did not become a drag.
    if (pressOnSelection_)
        editing_->setSelection(TextSelection::at(placeAt(*pressOnSelection_)));
    pressOnSelection_.reset();
    pressedUnit_.reset();
    dragScrolling_.stop();
    publishPrimarySelection();
}

bool TextView::isThirdClick(const QPointF& place) const {
    return sinceDoubleClick_.isValid() &&
           !sinceDoubleClick_.hasExpired(QGuiApplication::styleHints()->mouseDoubleClickInterval()) &&
           isNear(place, doubleClickPlace_);
}

// Selecting.

void TextView::beginSelecting(SelectionGranularity granularity, const QPointF& place) {
    sinceDoubleClick_.invalidate();
    granularity_ = granularity;
    lastMousePlace_ = place.toPoint();
    const bool isCharacter = granularity == SelectionGranularity::character;
    pressedUnit_ = unitAt(*storage_, granularity, isCharacter ? placeAt(place) : characterAt(place));
    editing_->setSelection({pressedUnit_->location, pressedUnit_->end()});
    caretBlinking_.restart();
}

void TextView::beginExtending(const QPointF& place) {
    granularity_ = SelectionGranularity::character;
    pressedUnit_ = {editing_->selection().anchor, 0};
    extendSelection(place);
}

void TextView::extendSelection(const QPointF& place) {
    const bool isCharacter = granularity_ == SelectionGranularity::character;
    const TextRange unit = unitAt(*storage_, granularity_, isCharacter ? placeAt(place) : characterAt(place));
    editing_->setSelection(selectionBetween(*pressedUnit_, unit));
    caretBlinking_.restart();
}

void TextView::dragScrolled(const QPoint& distance) {
    verticalAxis().scrollBy(distance.y());
    horizontalAxis().scrollBy(distance.x());
    if (pressedUnit_)
        extendSelection(lastMousePlace_);
    else if (dropPlace_)
        setDropPlace(placeAt(lastMousePlace_));
}

void TextView::pastePrimarySelection(const QPointF& place) {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if (isReadOnly() || !clipboard->supportsSelection())
        return;
    const QString text = clipboard->text(QClipboard::Selection);
    editing_->setSelection(TextSelection::at(placeAt(place)));
    if (!text.isEmpty())
        editing_->paste(text);
}

// The wheel.

void TextView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() & Qt::ControlModifier && isZoomable_)
        return zoomByWheel(*event);
    // What holds a short text may have something to scroll itself.
    if (verticalAxis().maximum() == 0 && horizontalAxis().maximum() == 0)
        return event->ignore();
    scrollByWheel(*event);
}

void TextView::scrollByWheel(const QWheelEvent& event) {
    QPointF distance = event.pixelDelta();
    if (distance.isNull())
        distance = QPointF(event.angleDelta()) / QWheelEvent::DefaultDeltasPerStep * QApplication::wheelScrollLines() *
                   layout_->font().rowHeight();
    if (event.modifiers() & Qt::ShiftModifier && distance.x() == 0)
        distance = distance.transposed();

    if (event.phase() == Qt::ScrollBegin)
        wheelRemainder_ = {};
    wheelRemainder_ += distance;
    const QPointF whole(std::trunc(wheelRemainder_.x()), std::trunc(wheelRemainder_.y()));
    wheelRemainder_ -= whole;
    horizontalAxis().scrollBy(-static_cast<std::int64_t>(whole.x()));
    verticalAxis().scrollBy(-static_cast<std::int64_t>(whole.y()));
}

void TextView::zoomByWheel(const QWheelEvent& event) {
    zoomRemainder_ += event.angleDelta().y();
    const int steps = zoomRemainder_ / QWheelEvent::DefaultDeltasPerStep;
    zoomRemainder_ %= QWheelEvent::DefaultDeltasPerStep;
    for (int step = 0; step < steps; ++step)
        zoomIn();
    for (int step = 0; step > steps; --step)
        zoomOut();
}

} // namespace quelm
