#pragma once

#include "Quelm/Foundation/ScrollAxis.h"
#include "Quelm/TextEngine/CaretBlinking.h"
#include "Quelm/TextEngine/DragScrolling.h"
#include "Quelm/TextEngine/FindIndicator.h"
#include "Quelm/TextEngine/SelectionGranularity.h"
#include "Quelm/TextEngine/TextEditing.h"
#include "Quelm/TextEngine/TextKeyBindings.h"
#include "Quelm/TextEngine/TextLayout.h"
#include "Quelm/TextEngine/TextScrolling.h"

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QPointF>
#include <QSize>

#include <memory>
#include <optional>
#include <vector>

class QMenu;
class QMimeData;

namespace quelm {

/// The widget of a text: shows a text storage in one fixed-pitch font, and edits it with keyboard, mouse, input
/// methods, clipboard and drag and drop as a platform text view does. Lines never wrap (as at first) or wrap to the
/// width.
///
/// What it costs to show, scroll, type, click and select depends on what the viewport holds, not on the length of the
/// text or its lines; copying and dragging out cost what the receiver asks for, when it does. Offsets are UTF-16 units
/// of the storage. For the main thread.
///
/// The view must come before whoever else follows the storage and asks the view, its layout or its editing for places
/// from there.
class TextView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit TextView(std::shared_ptr<TextStorage> storage, QWidget* parent = nullptr);
    ~TextView() override;

    TextStorage& textStorage() const { return *storage_; }
    std::shared_ptr<TextStorage> sharedTextStorage() const { return storage_; }
    TextEditing& editing() const { return *editing_; }
    TextLayout& textLayout() const { return *layout_; }
    ScrollAxis& verticalAxis() const { return scrolling_->vertical(); }
    ScrollAxis& horizontalAxis() const { return scrolling_->horizontal(); }

    /// The font before zooming.
    void setTextFont(const QFont& font);
    /// The space between the viewport's edges and the text.
    void setTextContainerInset(QSize inset);
    enum class Wrapping : std::uint8_t { none, toWidth };
    void setWrapping(Wrapping wrapping);

    /// Weakly held; see `TextEditing`.
    void setUndoManager(UndoManager* manager);
    bool isReadOnly() const;
    /// A text that is only read still has a caret, selects and copies, and looks the same. What an input method is
    /// composing is committed before, as the last edit; what is being dragged over the view is not let in.
    void setReadOnly(bool readOnly);

    /// Whether Tab leaves the view, as in a form, rather than being typed (as at first). Being read-only makes no
    /// difference: whoever types on while that lasts does not end up elsewhere.
    void setTabChangesFocus(bool changesFocus) { tabChangesFocus_ = changesFocus; }
    /// Whether keys and the wheel zoom (as at first).
    void setZoomable(bool zoomable) { isZoomable_ = zoomable; }

    TextRange selectedRange() const;
    /// What is being composed is committed first; the range is one of the text after that.
    void setSelectedRange(TextRange range);

    /// Whether an input method is composing text, which the storage does not have until it is committed.
    bool isComposing() const { return !layout_->composition().text.isEmpty(); }
    /// Commits what is being composed, an edit, if anything is.
    void finishComposing();

    /// Scrolls as little as possible until the stretch's end that the caret would be at can be seen, with the whole
    /// stretch where it fits.
    void scrollRangeToVisible(TextRange range);

    /// Draws attention to a stretch for a moment, as a search does to what it found.
    void showFindIndicator(TextRange range);
    bool isShowingFindIndicator() const;

    /// Stretches that are marked besides the selection (what a search has found near the viewport), in order.
    void setMarkedRanges(std::vector<TextRange> ranges);

    /// Characters that belong together, such as the brackets around something; none for none. An edit hides them.
    void setBracketRanges(std::vector<TextRange> ranges);
    const std::vector<TextRange>& bracketRanges() const { return brackets_; }

    /// The text that is in the viewport: whole rows, in order.
    TextRange visibleRange() const;

    /// A row of the text in the viewport, for whoever draws beside it: top and height in the viewport's coordinates.
    struct VisibleRow {
        qint64 line = 0;
        /// Whether it is the first of its line.
        bool beginsLine = true;
        int top = 0;
        int height = 0;
        /// From the top of the row to its baseline.
        int ascent = 0;
    };
    std::vector<VisibleRow> visibleRows() const;

    /// 1 at first; steps of a tenth, from 0.5 to 4.
    double zoom() const;
    void setZoom(double zoom);
    void zoomIn();
    void zoomOut();

    /// The area of the caret in the viewport's coordinates; it may be outside of it.
    QRect caretRectangle() const;
    /// The area that a caret at that offset would have.
    QRect caretRectangleAt(qint64 offset) const;
    /// The offset of the character place nearest to a place of the viewport.
    qint64 offsetAt(const QPoint& place) const;

    // What menus and keys do, under the names of the menus.
    bool canCut() const;
    bool canCopy() const;
    bool canPaste() const;
    void cut();
    /// O(log n): whoever pastes asks for the characters.
    void copy();
    void paste();
    void deleteSelection();
    void selectAll();
    void undo();
    void redo();

    /// A new menu of these, for the state of this moment, which the caller owns.
    QMenu* makeContextMenu();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    /// The user changed the text: an edit, an undo or a redo.
    void textDidChange();
    void selectionDidChange();
    void readOnlyDidChange();
    /// What the viewport shows moved, or its rows changed their place or height.
    void visibleAreaDidChange();
    void zoomDidChange();

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Following what is shown.
    void storageEdited(EditedMask mask, TextRange range, qint64 delta);
    void followMarks(TextRange range, qint64 delta);
    void userEdited();
    void selectionMoved();
    void updateFont();
    void updateWrapWidth();
    void updateInputMethodState();
    void repaint(TextRange range);
    void repaintCaret();
    void revealEdit();

    // Painting.
    struct Brush;
    void paintRow(const Brush& brush, qint64 row) const;
    void paintFrame(const Brush& brush, const QRectF& area) const;
    void paintMarks(const Brush& brush, qint64 row, TextRange text) const;
    void paintBrackets(const Brush& brush, qint64 row, TextRange text) const;
    void paintSelection(const Brush& brush, qint64 row, TextRange text) const;
    void paintFindIndicator(const Brush& brush, qint64 row, TextRange text) const;
    void paintCaret(QPainter& painter) const;
    std::vector<QRectF> areas(const Brush& brush, qint64 row, TextRange range) const;
    int caretWidth() const;

    // Keys.
    std::optional<TextKeyMeaning> usedMeaning(const QKeyEvent& event) const;
    bool isRefused(const QKeyEvent& event) const;
    void perform(const TextKeyMeaning& meaning);
    void move(TextMove move);
    void perform(TextCommand command);
    void performDeletion(TextCommand command);
    TextNavigation navigation() const { return TextNavigation(*storage_, *layout_); }
    void revealCaret();
    void deleteLine();

    // Mouse.
    qint64 rowAt(const QPointF& place) const;
    double xAt(const QPointF& place) const;
    qint64 placeAt(const QPointF& place) const;
    qint64 characterAt(const QPointF& place) const;
    bool isOnSelection(const QPointF& place) const;
    bool isThirdClick(const QPointF& place) const;
    void beginSelecting(SelectionGranularity granularity, const QPointF& place);
    void beginExtending(const QPointF& place);
    void extendSelection(const QPointF& place);
    void dragScrolled(const QPoint& distance);
    void pastePrimarySelection(const QPointF& place);
    void publishPrimarySelection() const;
    void scrollByWheel(const QWheelEvent& event);
    void zoomByWheel(const QWheelEvent& event);

    // Drag and drop.
    void startDrag();
    bool canInsert(const QMimeData& data) const;
    void setDropPlace(std::optional<qint64> offset);
    void drop(const QMimeData& data, Qt::DropAction action, qint64 offset);

    // Input methods.
    void showComposition(const QInputMethodEvent& event);
    void endComposition();
    void dropComposition();
    void noteCompositionDropped();
    void resetInputMethod();
    TextRange replacedByCommit(const QInputMethodEvent& event) const;
    TextRange surroundingRange() const;

    const std::shared_ptr<TextStorage> storage_;
    std::unique_ptr<TextLayout> layout_;
    std::unique_ptr<TextScrolling> scrolling_;
    std::unique_ptr<TextEditing> editing_;
    QFont font_;
    double zoom_ = 1;
    bool tabChangesFocus_ = false;
    bool isZoomable_ = true;

    CaretBlinking caretBlinking_;
    FindIndicator findIndicator_;
    std::vector<TextRange> marks_;
    std::vector<TextRange> brackets_;
    /// Where moves that keep to a column would like to be, until the selection changes otherwise.
    std::optional<double> columnX_;

    SelectionGranularity granularity_ = SelectionGranularity::character;
    /// What the selection that the mouse is making began with; absent while it makes none.
    std::optional<TextRange> pressedUnit_;
    /// Where the mouse was pressed on the selection, which it may be about to drag.
    std::optional<QPointF> pressOnSelection_;
    QPoint lastMousePlace_;
    QElapsedTimer sinceDoubleClick_;
    QPointF doubleClickPlace_;
    DragScrolling dragScrolling_;
    /// What wheel turns of less than a pixel, or of less than a step of the zoom, have summed up to.
    QPointF wheelRemainder_;
    int zoomRemainder_ = 0;

    /// Where a drop would insert.
    std::optional<qint64> dropPlace_;
    bool isCompositionCaretShown_ = true;
    bool isResettingInputMethod_ = false;
};

} // namespace quelm
