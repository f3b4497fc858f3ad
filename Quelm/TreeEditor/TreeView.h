#pragma once

#include "Quelm/Foundation/ScrollAxis.h"
#include "Quelm/TreeEditor/ChevronAnimation.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeRowCache.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"
#include "Quelm/TreeEditor/TreeRowView.h"
#include "Quelm/TreeEditor/TreeTypeAhead.h"

#include <QAbstractScrollArea>
#include <QElapsedTimer>

#include <cstdint>
#include <optional>
#include <vector>

class QMenu;

namespace quelm {

class InlineField;

/// The rows of a tree editor's outline. Every row is of one height, so that a place and a row are found from each other
/// by arithmetic; only rows in the viewport are made and painted, whatever their number and depth.
///
/// The base is the scroll area, not an item view: the positions of an item view are plain integers and its items cost
/// work per row, while rows can be given to assistive technology from the outline just as well. The one widget among
/// the rows is the field that stands over what the editor says is being edited.
class TreeView : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// `editor` must outlive the view. What is connected to the editor's signals must not destroy the view.
    explicit TreeView(TreeEditor& editor, QWidget* parent = nullptr);
    /// What is being edited is to be finished or cancelled before.
    ~TreeView() override;

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

    /// The open field; null when nothing is edited.
    InlineField* inlineField() const { return field_; }

    /// Hands the text of the open field, if there is one, to the editor, which may refuse it.
    void finishEditing();

    /// The menu that is open for a row; null when none is.
    QMenu* openMenu() const { return menu_; }

    /// Opens the menu of the selected row, below it, as keys do, which it uses up also without one.
    bool showSelectionMenu();

    /// The rows that meet the viewport, from the topmost on: their nodes.
    std::vector<NodeID> visibleNodes() const;

    /// Scrolls, as far as there is content, until the row begins that many pixels above the top of the viewport (below, if
    /// negative).
    void scrollRowToTop(std::int64_t row, std::int64_t pixelsAbove);

    /// Scrolls, as little as possible, until the whole row can be seen.
    void scrollToRow(std::int64_t row);

    ScrollAxis& verticalAxis() { return vertical_; }
    ScrollAxis& horizontalAxis() { return horizontal_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
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
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct RowRange {
        std::int64_t first;
        std::int64_t end;
    };

    // Rows and their places.
    bool hasRows() const;
    RowRange visibleRows() const;
    std::optional<std::int64_t> rowOf(std::optional<NodeID> id) const;
    std::optional<std::int64_t> selectedRow() const;
    std::int64_t contentTop(std::int64_t row) const;
    std::int64_t horizontalStep() const { return std::int64_t{4} * style_.indentation; }
    std::int64_t leastContentWidth() const;
    TreeRowView rowView(std::int64_t row) const;
    bool isInFront() const;
    TreeRowEmphasis emphasis(std::int64_t row, std::optional<std::int64_t> selected) const;

    // Following the editor and the look.
    void outlineChanged();
    void selectionChanged();
    void editingChanged();
    void selectAboveCollapsed();
    void noteSelectedRow();
    void revealSelection();
    void lookChanged();
    void updateExtents();
    void includeVisibleDepths();
    void viewScrolled();
    void repaintRow(std::optional<std::int64_t> row);
    void repaintSelection() { viewport()->update(); }
    void revealHorizontally(std::int64_t row);

    // Keys.
    bool handleKey(const QKeyEvent& event);
    bool handlePlainKey(const QKeyEvent& event);
    bool activate();
    bool typeAhead(const QKeyEvent& event);
    bool moveSelection(int key);
    bool expandOrScrollRight(bool recursive);
    bool collapseOrScrollLeft();
    void selectRow(std::int64_t row);
    std::optional<std::int64_t> rowNearSelection() const;

    // Mouse.
    /// What a click is for.
    enum class Target : std::uint8_t { nothing, chevron, badge, row };
    Target press(const QMouseEvent& event);
    void startTurn(NodeID id);
    bool showToolTip(const QPoint& place, const QPoint& globalPlace);
    void setPointer(std::optional<QPoint> place);
    void updateHover();

    // The field.
    bool canShowField() const;
    void openField();
    void closeField();
    void placeField();
    std::optional<TreeRowField> fieldIn(NodeID id) const;
    QString fieldName() const;

    // Menus.
    void showNodeMenu(std::int64_t row, const QPoint& place);
    void showKindMenu(std::int64_t row);
    void popUp(QMenu* menu, NodeID id, const QPoint& place);

    TreeEditor& editor_;
    TreeRowStyle style_;
    ScrollAxis vertical_;
    ScrollAxis horizontal_;
    ChevronAnimation chevron_;
    mutable TreeRowCache cache_;
    TreeTypeAhead typeAhead_;
    QElapsedTimer clock_;
    /// The depth of the deepest row that was visible since the outline last changed: how far there is to scroll right.
    std::int64_t deepestSeen_ = 0;
    /// Where the selection last had a row, for when its node is gone.
    std::int64_t lastSelectedRow_ = 0;
    /// Where the pointer is; absent while it is elsewhere.
    std::optional<QPoint> pointer_;
    /// The row whose badge is under the pointer.
    std::optional<std::int64_t> hoveredBadge_;
    /// Shown for what was being edited when it was opened.
    InlineField* field_ = nullptr;
    /// Whether an edit leaves the rows where they are rather than reveal what it changed.
    bool keepsPlace_ = false;
    std::optional<TreeEditor::Editing> edited_;
    QMenu* menu_ = nullptr;
    std::optional<NodeID> menuNode_;
    /// What wheel turns of less than a pixel have summed up to.
    QPointF wheelRemainder_;
};

} // namespace quelm
