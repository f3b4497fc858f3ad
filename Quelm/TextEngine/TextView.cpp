#include "Quelm/TextEngine/TextView.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEngine/TextViewAccessible.h"
#include "Quelm/TextEngine/TextViewNotices.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

constexpr double leastZoom = 0.5;
constexpr double mostZoom = 4;
constexpr double zoomStep = 0.1;

} // namespace

TextView::TextView(std::shared_ptr<TextStorage> storage, QWidget* parent)
    : QAbstractScrollArea(parent), storage_(std::move(storage)), font_(monospacedFont(TextStyle::body)) {
    layout_ = std::make_unique<TextLayout>(*storage_, TextFont(font_));
    scrolling_ = std::make_unique<TextScrolling>(*storage_, *layout_,
                                                 TextScrolling::Bars{*verticalScrollBar(), *horizontalScrollBar()});
    // The selection follows an edit first: whoever asks for the caret while the rest follows gets a place of the text.
    editing_ = std::make_unique<TextEditing>(storage_);
    connect(storage_.get(), &TextStorage::didProcessEditing, this, &TextView::storageEdited);
    connect(editing_.get(), &TextEditing::selectionDidChange, this, &TextView::selectionMoved);
    connect(editing_.get(), &TextEditing::textDidChange, this, &TextView::userEdited);
    connect(scrolling_.get(), &TextScrolling::moved, this, [this] {
        viewport()->update();
        Q_EMIT visibleAreaDidChange();
    });
    connect(&caretBlinking_, &CaretBlinking::changed, this, &TextView::repaintCaret);
    connect(&findIndicator_, &FindIndicator::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&dragScrolling_, &DragScrolling::stepped, this, &TextView::dragScrolled);

    setFrameShape(NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setInputMethodHints(Qt::ImhMultiLine | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setAcceptDrops(true);
    scrolling_->setCaretWidth(caretWidth());
    updateInputMethodState();

    installTextViewAccessibility();
    new TextViewNotices(*this);
}

TextView::~TextView() {
    // What follows may still speak, to nobody who is there any more.
    disconnect(editing_.get(), nullptr, this, nullptr);
    disconnect(storage_.get(), nullptr, this, nullptr);
}

// Settings.

void TextView::setTextFont(const QFont& font) {
    font_ = font;
    updateFont();
}

void TextView::setTextContainerInset(QSize inset) {
    scrolling_->setInset(inset);
    updateWrapWidth();
}

void TextView::setWrapping(Wrapping wrapping) {
    const bool isWrapping = wrapping == Wrapping::toWidth;
    if (isWrapping == scrolling_->isWrapping())
        return;
    scrolling_->setWrapping(isWrapping);
    updateWrapWidth();
    viewport()->update();
    Q_EMIT visibleAreaDidChange();
}

void TextView::setUndoManager(UndoManager* manager) {
    editing_->setUndoManager(manager);
}

bool TextView::isReadOnly() const {
    return editing_->isReadOnly();
}

void TextView::setReadOnly(bool readOnly) {
    if (readOnly == isReadOnly())
        return;
    finishComposing();
    if (dropPlace_)
        dragScrolling_.stop();
    setDropPlace(std::nullopt);
    editing_->setReadOnly(readOnly);
    updateInputMethodState();
    viewport()->update();
    QEvent change(QEvent::ReadOnlyChange);
    QCoreApplication::sendEvent(this, &change);
    Q_EMIT readOnlyDidChange();
}

double TextView::zoom() const {
    return zoom_;
}

void TextView::setZoom(double zoom) {
    const double rounded = std::round(std::clamp(zoom, leastZoom, mostZoom) / zoomStep) * zoomStep;
    if (qFuzzyCompare(rounded, zoom_))
        return;
    zoom_ = rounded;
    updateFont();
    Q_EMIT zoomDidChange();
}

void TextView::zoomIn() {
    setZoom(zoom_ + zoomStep);
}

void TextView::zoomOut() {
    setZoom(zoom_ - zoomStep);
}

void TextView::updateFont() {
    QFont zoomed = font_;
    if (font_.pixelSize() > 0)
        zoomed.setPixelSize(std::max(1, static_cast<int>(std::lround(font_.pixelSize() * zoom_))));
    else
        zoomed.setPointSizeF(font_.pointSizeF() * zoom_);
    layout_->setFont(TextFont(zoomed));
    columnX_.reset();
    scrolling_->setCaretWidth(caretWidth());
    scrolling_->noteFontChange();
    updateWrapWidth();
    updateMicroFocus();
}

void TextView::updateWrapWidth() {
    const int width = viewport()->width() - 2 * scrolling_->inset().width() - caretWidth();
    layout_->setWrapWidth(scrolling_->isWrapping() ? std::optional<double>(std::max(1, width)) : std::nullopt);
    scrolling_->settle();
}

void TextView::updateInputMethodState() {
    setAttribute(Qt::WA_InputMethodEnabled, isEnabled() && !isReadOnly());
    updateMicroFocus();
}

// Selection.

TextRange TextView::selectedRange() const {
    return editing_->selection().range();
}

void TextView::setSelectedRange(TextRange range) {
    finishComposing();
    editing_->setSelection({range.location, range.end()});
}

void TextView::scrollRangeToVisible(TextRange range) {
    const TextSelection selection = editing_->selection();
    const qint64 caret = range == selection.range() ? selection.caret : range.end();
    const qint64 other = caret == range.location ? range.end() : range.location;
    const qint64 caretRow = layout_->caretRow(caret);
    const qint64 otherRow = layout_->rowOf(other);
    const double caretX = layout_->caretX(caret);
    const double otherX = caretRow == otherRow ? layout_->x(other) : caretX;
    scrolling_->reveal(otherRow, caretRow, otherX, caretX);
}

void TextView::showFindIndicator(TextRange range) {
    findIndicator_.show(range);
}

bool TextView::isShowingFindIndicator() const {
    return findIndicator_.range().has_value();
}

void TextView::setMarkedRanges(std::vector<TextRange> ranges) {
    if (ranges == marks_)
        return;
    marks_ = std::move(ranges);
    viewport()->update();
}

void TextView::setBracketRanges(std::vector<TextRange> ranges) {
    if (ranges == brackets_)
        return;
    brackets_ = std::move(ranges);
    viewport()->update();
}

// What is visible.

TextRange TextView::visibleRange() const {
    const TextScrolling::Rows rows = scrolling_->visibleRows();
    if (rows.first >= rows.end)
        return {};
    return TextRange::between(layout_->rowRange(rows.first).location, layout_->rowRange(rows.end - 1).end());
}

std::vector<TextView::VisibleRow> TextView::visibleRows() const {
    const TextScrolling::Rows rows = scrolling_->visibleRows();
    const TextFont& font = layout_->font();
    std::vector<VisibleRow> result;
    for (qint64 row = rows.first; row < rows.end; ++row) {
        const qint64 line = layout_->lineOf(row);
        result.push_back(
            {line, layout_->firstRowOf(line) == row, scrolling_->top(row), font.rowHeight(), font.ascent()});
    }
    return result;
}

QSize TextView::sizeHint() const {
    return {scaledPixels(480), scaledPixels(320)};
}

QSize TextView::minimumSizeHint() const {
    const QSize inset = scrolling_->inset();
    const int frame = 2 * frameWidth();
    return {2 * inset.width() + static_cast<int>(std::ceil(layout_->font().tabWidth())) + frame,
            2 * inset.height() + layout_->font().rowHeight() + frame};
}

// Changes.

void TextView::storageEdited(EditedMask mask, TextRange range, qint64 delta) {
    if (mask == EditedMask::attributes) {
        layout_->noteAttributes(range);
        return repaint(range);
    }
    layout_->noteEdit(range, delta);
    if (isComposing() && range.location <= layout_->composition().offset)
        dropComposition();
    followMarks(range, delta);
    brackets_.clear();
    findIndicator_.hide();
    columnX_.reset();
    scrolling_->noteEdit(range, delta);
}

/// Keeps the marks that an edit did not meet where their text is.
void TextView::followMarks(TextRange range, qint64 delta) {
    const TextRange replaced{range.location, range.length - delta};
    std::erase_if(marks_, [replaced](TextRange mark) {
        return mark.location < replaced.end() && replaced.location < mark.end();
    });
    for (TextRange& mark : marks_)
        if (mark.location >= replaced.end())
            mark.location += delta;
}

void TextView::userEdited() {
    scrolling_->settle();
    revealEdit();
    Q_EMIT textDidChange();
}

/// The caret as a rule; of a stretch longer than the viewport that undoing or redoing selects, its start.
void TextView::revealEdit() {
    const UndoManager* manager = editing_->undoManager();
    const bool isRestored = manager && (manager->isUndoing() || manager->isRedoing());
    const TextRange selected = selectedRange();
    const qint64 rows = layout_->rowOf(selected.end()) - layout_->rowOf(selected.location) + 1;
    if (isRestored && rows > scrolling_->rowsAPage())
        scrollRangeToVisible({selected.location, 0});
    else
        revealCaret();
}

void TextView::selectionMoved() {
    columnX_.reset();
    if (isComposing() && layout_->composition().offset != editing_->selection().caret)
        dropComposition();
    if (hasFocus())
        caretBlinking_.restart();
    viewport()->update();
    updateMicroFocus();
    Q_EMIT selectionDidChange();
}

void TextView::repaint(TextRange range) {
    const TextRange met = visibleRange().intersection(range);
    if (range.end() < met.location || range.location > met.end())
        return;
    const int top = scrolling_->top(layout_->rowOf(met.location));
    const int bottom = scrolling_->top(layout_->rowOf(met.end()) + 1);
    viewport()->update(0, top, viewport()->width(), bottom - top);
}

void TextView::repaintCaret() {
    viewport()->update(caretRectangle().adjusted(-1, 0, 1, 0));
}

// Events.

bool TextView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && usedMeaning(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QAbstractScrollArea::event(event);
}

bool TextView::focusNextPrevChild(bool next) {
    if (next && !tabChangesFocus_)
        return false;
    return QAbstractScrollArea::focusNextPrevChild(next);
}

void TextView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    const QRect caret = caretRectangle();
    const bool wasVisible = hasFocus() && QRect(QPoint(), event->oldSize()).contains(caret);
    updateWrapWidth();
    scrolling_->setViewportSize(viewport()->size());
    // A scroll bar that comes up must not cover the caret.
    if (wasVisible && !viewport()->rect().contains(caretRectangle()))
        revealCaret();
}

void TextView::scrollContentsBy(int, int) {
    // The axes tell of every change of position, also of those that are too small for the scroll bars.
}

void TextView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    switch (event->type()) {
    case QEvent::EnabledChange:
        updateInputMethodState();
        [[fallthrough]];
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
    case QEvent::ActivationChange:
        return viewport()->update();
    default:
        return;
    }
}

void TextView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    caretBlinking_.restart();
    viewport()->update();
}

void TextView::focusOutEvent(QFocusEvent* event) {
    finishComposing();
    editing_->endTypingStep();
    caretBlinking_.stop();
    viewport()->update();
    QAbstractScrollArea::focusOutEvent(event);
}

} // namespace quelm
