#pragma once

#include "Quelm/Foundation/ScrollAxis.h"
#include "Quelm/TreeEditor/ChevronAnimation.h"
#include "Quelm/TreeEditor/TreeRowCache.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"
#include "Quelm/TreeEditor/TreeRowView.h"

#include <QAbstractScrollArea>

#include <cstdint>
#include <optional>

namespace quelm {

class TreeEditor;

/// The rows of a tree editor's outline. Every row is of one height, so that a place and a row are found from each other
/// by arithmetic; only rows in the viewport are made and painted, whatever their number and depth.
///
/// The base is the scroll area, not an item view: the positions of an item view are plain integers and its items cost
/// work per row, while rows can be given to assistive technology from the outline just as well.
class TreeView : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// `editor` must outlive the view.
    explicit TreeView(TreeEditor& editor, QWidget* parent = nullptr);

    TreeEditor& editor() const { return editor_; }
    const TreeRowStyle& rowStyle() const { return style_; }

    /// The row at a place of the viewport.
    std::optional<std::int64_t> rowAt(const QPoint& place) const;

    /// The row's stretch of the viewport, if it meets the viewport at all.
    std::optional<QRect> rowArea(std::int64_t row) const;

    /// Where a part of a row is painted; empty when it is not.
    QRectF partArea(std::int64_t row, TreeRowPart part) const;

    /// What a tooltip over that place says; empty for none.
    QString toolTipAt(const QPoint& place) const;

    /// Scrolls, as little as possible, until the whole row can be seen.
    void scrollToRow(std::int64_t row);

    ScrollAxis& verticalAxis() { return vertical_; }
    ScrollAxis& horizontalAxis() { return horizontal_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct RowRange {
        std::int64_t first;
        std::int64_t end;
    };

    bool hasRows() const;
    RowRange visibleRows() const;
    std::optional<std::int64_t> selectedRow() const;
    std::int64_t contentTop(std::int64_t row) const;
    std::int64_t horizontalStep() const { return std::int64_t{4} * style_.indentation; }
    TreeRowView rowView(std::int64_t row) const;
    TreeRowEmphasis emphasis(std::int64_t row, std::optional<std::int64_t> selected) const;

    void outlineChanged();
    void selectionChanged();
    void lookChanged();
    void updateExtents();
    void includeVisibleDepths();
    void repaintRow(std::int64_t row);
    void repaintSelection() { viewport()->update(); }

    bool moveSelection(QKeyEvent* event);
    bool expandOrScrollRight(bool recursive);
    bool collapseOrScrollLeft();
    void selectRow(std::int64_t row);
    std::optional<std::int64_t> rowNearSelection() const;
    void revealHorizontally(std::int64_t row);
    void press(QMouseEvent* event);
    void startTurn(NodeID id);

    TreeEditor& editor_;
    TreeRowStyle style_;
    ScrollAxis vertical_;
    ScrollAxis horizontal_;
    ChevronAnimation chevron_;
    mutable TreeRowCache cache_;
    /// The depth of the deepest row that was visible since the outline last changed: how far there is to scroll right.
    std::int64_t deepestSeen_ = 0;
    /// What wheel turns of less than a pixel have summed up to.
    QPointF wheelRemainder_;
};

} // namespace quelm
