#include "Quelm/TextEditor/LineNumberGutter.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

constexpr int leastDigits = 2;

/// Logical points beside the numbers, together and on the right.
constexpr double margins = 16;
constexpr double rightMargin = 8;

int decimalDigits(qint64 number) {
    int digits = 1;
    for (; number >= 10; number /= 10)
        ++digits;
    return digits;
}

/// A stretch of whole lines, both from 0, selected from the one to the other.
TextSelection selectionOfLines(const TextStorage& storage, qint64 origin, qint64 target) {
    const auto end = [&storage](qint64 line) {
        return line + 1 < storage.lineCount() ? storage.lineStart(line + 1) : storage.length();
    };
    return target < origin ? TextSelection{end(origin), storage.lineStart(target)}
                           : TextSelection{storage.lineStart(origin), end(target)};
}

/// The line where a selection began: with the caret above, one that was selected whole ends at the start of the next.
qint64 lineOfAnchor(const TextStorage& storage, TextSelection selection) {
    return storage.lineAt(selection.caret < selection.anchor ? selection.anchor - 1 : selection.anchor);
}

} // namespace

LineNumberGutter::LineNumberGutter(TextView& textView, QWidget* parent)
    : QWidget(parent), textView_(&textView), lineStarts_(textView.textStorage().text()) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Números de línea"));
    connect(&textView, &TextView::visibleAreaDidChange, this, &LineNumberGutter::redraw);
    connect(&textView, &TextView::selectionDidChange, this, &LineNumberGutter::redraw);
    connect(&textView, &TextView::zoomDidChange, this, &LineNumberGutter::updateNumberFont);
    connect(&dragScrolling_, &DragScrolling::stepped, this, &LineNumberGutter::dragScrolled);
    updateNumberFont();
    sizeToLineCount();
}

// Following the text.

void LineNumberGutter::noteEdit(TextRange range, qint64 delta) {
    if (!textView_)
        return;
    lineStarts_.noteEdit(range, delta, textView_->textStorage().text());
    redraw();
    if (isSizingPosted_)
        return;
    isSizingPosted_ = true;
    QMetaObject::invokeMethod(this, &LineNumberGutter::sizeToLineCount, Qt::QueuedConnection);
}

void LineNumberGutter::sizeToLineCount() {
    isSizingPosted_ = false;
    const int newDigits = std::max(decimalDigits(lineStarts_.count()), leastDigits);
    if (newDigits == digits_)
        return;
    digits_ = newDigits;
    updateWidth();
}

void LineNumberGutter::updateNumberFont() {
    numberFont_ = monospacedDigitFont(TextStyle::caption);
    if (textView_) {
        const double zoomed = numberFont_.pixelSize() * textView_->zoom();
        numberFont_.setPixelSize(std::max(1, static_cast<int>(std::lround(zoomed))));
    }
    updateWidth();
    redraw();
}

void LineNumberGutter::updateWidth() {
    const double numbers = QFontMetricsF(numberFont_).horizontalAdvance(u'8') * digits_;
    setFixedWidth(static_cast<int>(std::ceil(numbers + scaledPixels(margins))));
}

void LineNumberGutter::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateNumberFont();
    else if (event->type() == QEvent::PaletteChange)
        redraw();
}

// Painting.

void LineNumberGutter::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QPalette& colors = textView_ ? textView_->viewport()->palette() : palette();
    painter.fillRect(event->rect(), colors.color(QPalette::Base));
    painter.fillRect(QRect(width() - 1, 0, 1, height()), semanticColor(ColorRole::separator, appearanceOf(colors)));
    if (textView_)
        paintNumbers(painter);
}

void LineNumberGutter::paintNumbers(QPainter& painter) const {
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setFont(numberFont_);
    const QFontMetricsF metrics(numberFont_, this);
    const Appearance appearance = appearanceOf(textView_->viewport()->palette());
    const qint64 current = lineStarts_.countUpTo(textView_->selectedRange().location);
    const int top = viewportTop();
    const int right = width() - scaledPixels(rightMargin);
    for (const TextView::VisibleRow& row : textView_->visibleRows()) {
        if (!row.beginsLine)
            continue;
        const qint64 number = row.line + 1;
        const QString text = QString::number(number);
        painter.setPen(semanticColor(number == current ? ColorRole::text : ColorRole::tertiaryText, appearance));
        painter.drawText(QPointF(right - metrics.horizontalAdvance(text), top + row.top + row.ascent), text);
    }
}

int LineNumberGutter::viewportTop() const {
    return static_cast<int>(std::lround(mapFromGlobal(textView_->viewport()->mapToGlobal(QPointF(0, 0))).y()));
}

// Selecting lines.

qint64 LineNumberGutter::lineNear(int y) const {
    const int place = y - viewportTop();
    const std::vector<TextView::VisibleRow> rows = textView_->visibleRows();
    const auto row = std::ranges::find_if(
        rows, [place](const TextView::VisibleRow& candidate) { return place < candidate.top + candidate.height; });
    if (row != rows.end())
        return row->line;
    return rows.empty() ? 0 : rows.back().line;
}

void LineNumberGutter::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !textView_)
        return event->ignore();
    textView_->setFocus(Qt::MouseFocusReason);
    const TextSelection selection = textView_->editing().selection();
    // This ends what an input method was composing.
    textView_->setSelectedRange(selection.range());
    mouseY_ = event->position().toPoint().y();
    const bool isExtending = event->modifiers() & Qt::ShiftModifier;
    dragOrigin_ = isExtending ? lineOfAnchor(textView_->textStorage(), selection) : lineNear(mouseY_);
    selectDraggedLines();
}

void LineNumberGutter::mouseMoveEvent(QMouseEvent* event) {
    if (!dragOrigin_ || !textView_)
        return event->ignore();
    mouseY_ = event->position().toPoint().y();
    selectDraggedLines();
    const QRect visible(0, viewportTop(), width(), textView_->viewport()->height());
    dragScrolling_.follow(QPoint(0, mouseY_), visible);
}

void LineNumberGutter::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    dragOrigin_.reset();
    dragScrolling_.stop();
}

void LineNumberGutter::dragScrolled(const QPoint& distance) {
    if (!dragOrigin_ || !textView_)
        return dragScrolling_.stop();
    textView_->verticalAxis().scrollBy(distance.y());
    selectDraggedLines();
}

void LineNumberGutter::selectDraggedLines() {
    const TextStorage& storage = textView_->textStorage();
    const qint64 origin = std::min(*dragOrigin_, storage.lineCount() - 1);
    const TextSelection selection = selectionOfLines(storage, origin, lineNear(mouseY_));
    textView_->editing().setSelection(selection);
}

void LineNumberGutter::wheelEvent(QWheelEvent* event) {
    if (!textView_)
        return event->ignore();
    QWidget* const viewport = textView_->viewport();
    QWheelEvent forwarded(viewport->mapFromGlobal(event->globalPosition()), event->globalPosition(),
                          event->pixelDelta(), event->angleDelta(), event->buttons(), event->modifiers(),
                          event->phase(), event->inverted(), event->source());
    QCoreApplication::sendEvent(viewport, &forwarded);
    event->accept();
}

} // namespace quelm
