#pragma once

#include "Quelm/TextEditor/LineStarts.h"
#include "Quelm/TextEngine/DragScrolling.h"
#include "Quelm/TextEngine/TextView.h"

#include <QFont>
#include <QPointer>
#include <QWidget>

#include <optional>

namespace quelm {

/// The numbers of the lines beside a text view, that of the line with the start of the selection stronger than the
/// others. It is as wide as the greatest number needs, never less than two digits, and follows the view's scrolling,
/// selection and zoom by itself; edits are reported to it. A click selects a line, a drag several.
/// The text view is held weakly. What an edit or a paint costs is O(log n) besides the rows in the viewport.
class LineNumberGutter : public QWidget {
    Q_OBJECT

public:
    /// Numbers the lines that the view's storage has at this moment.
    explicit LineNumberGutter(TextView& textView, QWidget* parent = nullptr);

    TextView* textView() const { return textView_; }
    const LineStarts& lineStarts() const { return lineStarts_; }
    /// The number of digits that there is room for.
    int digits() const { return digits_; }
    /// The font of the numbers, zoomed as the text is.
    const QFont& numberFont() const { return numberFont_; }

    /// The text view shows something else now.
    void redraw() { update(); }

    /// The text view's storage was edited, as `TextStorage::didProcessEditing` says of an edit of characters. The width
    /// follows from the event loop.
    void noteEdit(TextRange range, qint64 delta);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void sizeToLineCount();
    void updateNumberFont();
    void updateWidth();
    void paintNumbers(QPainter& painter) const;

    /// Where the top of the text view's viewport is here.
    int viewportTop() const;
    /// The line, from 0, of the visible row nearest to a height here.
    qint64 lineNear(int y) const;
    /// Selects the lines from the one that the drag began at to the one at the mouse, the caret at its side.
    void selectDraggedLines();
    void dragScrolled(const QPoint& distance);

    const QPointer<TextView> textView_;
    LineStarts lineStarts_;
    QFont numberFont_;
    int digits_ = 0;
    bool isSizingPosted_ = false;

    /// The line, from 0, that a drag began at; absent while there is none.
    std::optional<qint64> dragOrigin_;
    int mouseY_ = 0;
    DragScrolling dragScrolling_;
};

} // namespace quelm
