#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/InlineFieldExtent.h"

#include <QPainter>
#include <QShowEvent>

#include <algorithm>
#include <utility>

namespace quelm {

namespace {

constexpr double leastWidth = 120; // these in points
constexpr double mostWidth = 520;
constexpr double cornerRadius = 5;
constexpr double outlineWidth = 1.5;
constexpr double hairline = 1;

/// Between the field's edges and the text view: room for the outline.
int frameWidth() {
    return scaledPixels(2);
}

/// With the frame, leaves a field of one line a little lower than a row of the tree.
QSize textInset() {
    return {scaledPixels(4), scaledPixels(1)};
}

void drawOutline(QPainter& painter, const QRect& area, const QColor& color, double width) {
    const double half = width / 2;
    const double radius = scaledPixels(cornerRadius);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(QRectF(area).adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace

void InlineField::makeTextView() {
    textView_ = new TextView(storage_, this);
    textView_->setUndoManager(undoManager_.get());
    textView_->setTextContainerInset(textInset());
    textView_->setTabChangesFocus(true);
    textView_->setZoomable(false);
    textView_->editing().setSingleLine(isSingleLine_);
    textView_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    textView_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    textView_->setAccessibleName(kind_ ? tr("Valor") : tr("Clave"));
    textView_->setSelectedRange({0, storage_->length()});
    textView_->installEventFilter(this);
    setFocusProxy(textView_);
}

bool InlineField::isWrapping() const {
    return kind_ == NodeKind::string;
}

// Its size.

QPoint InlineField::textOrigin() const {
    const QSize inset = textInset();
    return {frameWidth() + inset.width(), frameWidth() + inset.height()};
}

int InlineField::widthBesideText() const {
    return 2 * textOrigin().x() + textView_->caretRectangleAt(0).width();
}

int InlineField::rowsAt(int width) const {
    // One more than is shown tells that there is something to scroll to.
    constexpr int most = mostLines + 1;
    return isWrapping() ? extent_->wrappedRows(width - widthBesideText(), most) : extent_->lines(most);
}

QSize InlineField::sizeHint() const {
    const int beside = widthBesideText();
    const int most = scaledPixels(mostWidth);
    const int width = std::max(scaledPixels(leastWidth), beside + extent_->width(most - beside));
    return {width, heightForWidth(width)};
}

int InlineField::heightForWidth(int width) const {
    const int rows = std::min(rowsAt(width), mostLines);
    return 2 * textOrigin().y() + rows * textView_->textLayout().font().rowHeight();
}

void InlineField::updateSize() {
    extent_->setComposition(textView_->textLayout().composition());
    updateScrollBar();
    // It may have been given less room than it wants.
    const QSize size = sizeHint();
    const int height = heightForWidth(width());
    const bool wasSame = std::exchange(announcedSize_, size) == size;
    if (std::exchange(announcedHeight_, height) != height || !wasSame)
        Q_EMIT sizeHintChanged();
}

void InlineField::updateScrollBar() {
    const bool isScrolling = rowsAt(width()) > mostLines;
    textView_->setVerticalScrollBarPolicy(isScrolling ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
}

void InlineField::resizeEvent(QResizeEvent*) {
    updateScrollBar();
    const int frame = frameWidth();
    textView_->setGeometry(rect().adjusted(frame, frame, -frame, -frame));
    announcedHeight_ = heightForWidth(width());
}

void InlineField::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Not before the text view has its width, since to wrap costs the length of the text for each one.
    if (isWrapping())
        textView_->setWrapping(TextView::Wrapping::toWidth);
    if (!event->spontaneous())
        textView_->setFocus(Qt::OtherFocusReason);
}

// Its look.

void InlineField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Appearance appearance = appearanceOf(palette());
    painter.setBrush(palette().base());
    drawOutline(painter, rect(), semanticColor(ColorRole::separator, appearance), hairline);
    painter.setBrush(Qt::NoBrush);
    if (!isValid_)
        drawOutline(painter, rect(), semanticColor(ColorRole::red, appearance), outlineWidth);
    else if (textView_->hasFocus())
        drawOutline(painter, rect(), semanticColor(ColorRole::accent, appearance), outlineWidth);
}

} // namespace quelm
