#include "Quelm/TreeEditor/TreeView.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeViewAccessible.h"
#include "Quelm/TreeEditor/TreeViewAccessibleNotices.h"

#include <QEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace quelm {

TreeView::TreeView(TreeEditor& editor, QWidget* parent)
    : QAbstractScrollArea(parent), editor_(editor), style_(palette()), vertical_(*verticalScrollBar()),
      horizontal_(*horizontalScrollBar()), typeAhead_(editor) {
    installTreeViewAccessibility();
    setAccessibleName(tr("Árbol"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setMouseTracking(true);
    clock_.start();
    connect(&editor_, &TreeEditor::outlineChanged, this, &TreeView::outlineChanged);
    connect(&editor_, &TreeEditor::selectionChanged, this, &TreeView::selectionChanged);
    connect(&editor_, &TreeEditor::editingChanged, this, &TreeView::editingChanged);
    connect(&editor_, &TreeEditor::willEdit, this, &TreeView::finishEditing);
    connect(&editor_, &TreeEditor::didEdit, this, &TreeView::revealSelection);
    connect(&vertical_, &ScrollAxis::positionChanged, this, &TreeView::viewScrolled);
    connect(&horizontal_, &ScrollAxis::positionChanged, this, &TreeView::viewScrolled);
    connect(&chevron_, &ChevronAnimation::valueChanged, this, [this] { repaintRow(rowOf(chevron_.node())); });
    connect(&typeAhead_, &TreeTypeAhead::found, this, &TreeView::selectRow);
    new TreeViewAccessibleNotices(*this);
}

TreeView::~TreeView() {
    disconnect(&editor_, nullptr, this, nullptr);
    if (!field_)
        return;
    field_->abandon();
    editor_.setEditing(std::nullopt);
}

QSize TreeView::sizeHint() const {
    return {scaledPixels(480), scaledPixels(320)};
}

QSize TreeView::minimumSizeHint() const {
    return {scaledPixels(240), scaledPixels(100)};
}

bool TreeView::hasRows() const {
    return editor_.hasCurrentRows();
}

TreeView::RowRange TreeView::visibleRows() const {
    if (!hasRows())
        return {0, 0};
    const std::int64_t top = vertical_.position() - style_.verticalMargin;
    const std::int64_t bottom = top + viewport()->height();
    const std::int64_t count = editor_.outline().rowCount();
    return {std::clamp<std::int64_t>(top / style_.rowHeight, 0, count),
            std::clamp<std::int64_t>((bottom + style_.rowHeight - 1) / style_.rowHeight, 0, count)};
}

std::optional<std::int64_t> TreeView::rowOf(std::optional<NodeID> id) const {
    return id && hasRows() ? editor_.outline().index(*id) : std::nullopt;
}

std::optional<std::int64_t> TreeView::selectedRow() const {
    return rowOf(editor_.selection());
}

std::int64_t TreeView::contentTop(std::int64_t row) const {
    return style_.verticalMargin + row * style_.rowHeight;
}

std::optional<std::int64_t> TreeView::rowAt(const QPoint& place) const {
    const std::int64_t y = vertical_.position() + place.y() - style_.verticalMargin;
    if (!hasRows() || y < 0 || y / style_.rowHeight >= editor_.outline().rowCount())
        return std::nullopt;
    return y / style_.rowHeight;
}

std::optional<QRect> TreeView::rowArea(std::int64_t row) const {
    const RowRange visible = visibleRows();
    if (row < visible.first || row >= visible.end)
        return std::nullopt;
    const auto top = static_cast<int>(contentTop(row) - vertical_.position());
    return QRect(0, top, viewport()->width(), style_.rowHeight);
}

TreeRowView TreeView::rowView(std::int64_t row) const {
    const auto top = static_cast<int>(contentTop(row) - vertical_.position());
    const TreeRowContents& contents = cache_.contents(row, editor_, style_);
    return TreeRowView(style_, contents, QRect(0, top, viewport()->width(), style_.rowHeight),
                       style_.contentInset - horizontal_.position(), fieldIn(contents.id));
}

QRectF TreeView::partArea(std::int64_t row, TreeRowPart part) const {
    return rowArea(row) ? rowView(row).rect(part) : QRectF();
}

bool TreeView::isInFront() const {
    // A view that is rendered without being shown looks as it would in front.
    return !isVisible() || (isActiveWindow() && (hasFocus() || field_)) || menu_;
}

TreeRowEmphasis TreeView::emphasis(std::int64_t row, std::optional<std::int64_t> selected) const {
    if (row == selected)
        return isInFront() ? TreeRowEmphasis::selection : TreeRowEmphasis::inactiveSelection;
    return row % 2 == 1 ? TreeRowEmphasis::alternate : TreeRowEmphasis::none;
}

void TreeView::paintEvent(QPaintEvent* event) {
    const RowRange visible = visibleRows();
    if (visible.first == visible.end)
        return;
    cache_.keepOnly(visible.first, visible.end);
    const std::optional<std::int64_t> selected = selectedRow();

    QPainter painter(viewport());
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setLayoutDirection(Qt::LeftToRight);
    for (std::int64_t row = visible.first; row < visible.end; ++row) {
        const auto top = static_cast<int>(contentTop(row) - vertical_.position());
        if (!event->rect().intersects(QRect(0, top, viewport()->width(), style_.rowHeight)))
            continue;
        const TreeRowContents& contents = cache_.contents(row, editor_, style_);
        rowView(row).paint(painter, {.emphasis = emphasis(row, selected),
                                     .chevronDegrees = chevron_.degrees(contents.id, contents.isExpanded),
                                     .isBadgeHovered = hoveredBadge_ == row,
                                     .isOutlined = menuNode_ == contents.id});
    }
}

void TreeView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    const auto row = selectedRow();
    const std::int64_t formerEnd = vertical_.position() + event->oldSize().height();
    const bool wasVisible = row && contentTop(*row) >= vertical_.position() && contentTop(*row + 1) <= formerEnd;
    updateExtents();
    // A scroll bar comes up after the step that made it necessary, and must not cover the row stepped to.
    if (wasVisible)
        scrollToRow(*row);
    placeField();
}

void TreeView::scrollContentsBy(int, int) {
    // The axes tell of every change of position, also of those that are too small for the scroll bars.
}

void TreeView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    if (!hasRows())
        editor_.reload();
    // What is edited may be older than the view.
    editingChanged();
}

void TreeView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
        return lookChanged();
    default:
        return;
    }
}

bool TreeView::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        repaintSelection();
    return QAbstractScrollArea::event(event);
}

void TreeView::viewScrolled() {
    includeVisibleDepths();
    placeField();
    updateHover();
    viewport()->update();
}

void TreeView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    repaintSelection();
}

void TreeView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    typeAhead_.cancel();
    repaintSelection();
}

void TreeView::outlineChanged() {
    typeAhead_.cancel();
    cache_.clear();
    deepestSeen_ = 0;
    updateExtents();
    selectAboveCollapsed();
    noteSelectedRow();
    updateHover();
    viewport()->update();
    // What is hidden by a collapse cannot be edited any more.
    if (field_ && editor_.editing() == edited_ && !rowOf(edited_->id))
        finishEditing();
    placeField();
}

void TreeView::selectionChanged() {
    noteSelectedRow();
    if (const auto row = selectedRow())
        scrollToRow(*row);
    viewport()->update();
}

void TreeView::selectAboveCollapsed() {
    const std::optional<NodeID> selection = editor_.selection();
    if (!selection || !hasRows() || selectedRow() || !editor_.isLinked(*selection))
        return;
    // Nobody may remove by a key what cannot be seen.
    if (const auto row = rowNearSelection())
        editor_.select(editor_.outline().rowID(*row));
}

void TreeView::noteSelectedRow() {
    if (const auto row = selectedRow())
        lastSelectedRow_ = *row;
}

void TreeView::revealSelection() {
    const auto row = selectedRow();
    if (!row || keepsPlace_)
        return;
    scrollToRow(*row);
    revealHorizontally(*row);
}

void TreeView::lookChanged() {
    style_ = TreeRowStyle(palette());
    cache_.clear();
    updateExtents();
    placeField();
    viewport()->update();
}

void TreeView::updateExtents() {
    const std::int64_t rows = hasRows() ? editor_.outline().rowCount() : 0;
    vertical_.setExtent(contentTop(rows) + style_.verticalMargin, viewport()->height(), style_.rowHeight);
    includeVisibleDepths();
}

void TreeView::includeVisibleDepths() {
    const RowRange visible = visibleRows();
    for (std::int64_t row = visible.first; row < visible.end; ++row)
        deepestSeen_ = std::max(deepestSeen_, editor_.outline().rowDepth(row));
    const std::int64_t width = style_.contentInset + deepestSeen_ * style_.indentation + leastContentWidth();
    horizontal_.setExtent(width, viewport()->width(), horizontalStep());
}

std::int64_t TreeView::leastContentWidth() const {
    // A narrow window must not be scrolled sideways for rows that are hardly indented.
    return std::min<std::int64_t>(style_.leastContentWidth, viewport()->width() * std::int64_t{2} / 3);
}

void TreeView::repaintRow(std::optional<std::int64_t> row) {
    if (const auto area = row ? rowArea(*row) : std::nullopt)
        viewport()->update(*area);
}

void TreeView::revealHorizontally(std::int64_t row) {
    includeVisibleDepths();
    const std::int64_t start = editor_.outline().rowDepth(row) * style_.indentation;
    const std::int64_t length = style_.contentInset + leastContentWidth();
    // A narrow window shows the start of the row rather than its end.
    horizontal_.reveal(start, std::min<std::int64_t>(length, viewport()->width()));
}

std::vector<NodeID> TreeView::visibleNodes() const {
    std::vector<NodeID> nodes;
    const RowRange visible = visibleRows();
    for (std::int64_t row = visible.first; row < visible.end; ++row)
        nodes.push_back(editor_.outline().rowID(row));
    return nodes;
}

void TreeView::scrollRowToTop(std::int64_t row, std::int64_t pixelsAbove) {
    vertical_.setPosition(contentTop(row) + pixelsAbove);
}

void TreeView::scrollToRow(std::int64_t row) {
    // The margins belong to the first and last row.
    const bool isFirst = row == 0;
    const bool isLast = row + 1 == editor_.outline().rowCount();
    const std::int64_t start = isFirst ? 0 : contentTop(row);
    vertical_.reveal(start, contentTop(row) + style_.rowHeight + (isLast ? style_.verticalMargin : 0) - start);
}

} // namespace quelm
