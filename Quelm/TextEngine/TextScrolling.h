#pragma once

#include "Quelm/Foundation/ScrollAxis.h"
#include "Quelm/TextEngine/TextRange.h"

#include <QObject>
#include <QPoint>
#include <QSize>
#include <QTimer>

class QScrollBar;

namespace quelm {

class TextLayout;
class TextStorage;

/// Which part of a layout is to be seen in a viewport, and where. What is at the top stays there when rows above it
/// come and go. Content is as wide as the widest row that was ever in the viewport (or revealed): others are not
/// measured.
///
/// Lengths are logical pixels; places are in the viewport's coordinates. Each call costs what the rows in the viewport
/// cost the layout. For the main thread.
class TextScrolling : public QObject {
    Q_OBJECT

public:
    struct Bars {
        QScrollBar& vertical;
        QScrollBar& horizontal;
    };
    /// All must outlive this object, and the layout be that of the storage.
    TextScrolling(const TextStorage& storage, const TextLayout& layout, Bars bars, QObject* parent = nullptr);

    ScrollAxis& vertical() { return vertical_; }
    ScrollAxis& horizontal() { return horizontal_; }

    /// Whether the layout wraps rows at the viewport's width, with nothing to scroll to sideways. To be settled once it
    /// does.
    void setWrapping(bool isWrapping);
    bool isWrapping() const { return isWrapping_; }
    void setInset(QSize inset);
    QSize inset() const { return inset_; }
    void setViewportSize(QSize size);
    /// The width of the caret, for which there is room after the longest row.
    void setCaretWidth(int width);

    // Changes of the layout, told after the layout itself was told.

    /// As `TextStorage::didProcessEditing` says. Settles once the event loop is reached, if nobody did before.
    void noteEdit(TextRange range, qint64 delta);
    /// Measures of another font: rows may have any place.
    void noteFontChange();

    /// Looks at the rows in the viewport, so that what they turn out to be is known: their number and their widths.
    void settle();

    // Places.

    struct Rows {
        qint64 first = 0;
        qint64 end = 0;
    };
    /// The rows that meet a stretch of the viewport.
    Rows rowsBetween(int top, int bottom) const;
    /// Those that meet the viewport.
    Rows visibleRows() const { return rowsBetween(0, size_.height()); }
    /// Those that are in the viewport wholly.
    qint64 rowsAPage() const;

    /// Where the top of a row is, kept within the range of integers.
    int top(qint64 row) const;
    /// Where the text of rows begins.
    double left() const;
    /// The nearest row to a height of the viewport.
    qint64 rowAt(int y) const;

    // Scrolling.

    /// As little as possible so that the rows and, of the last one, the stretch of x can be seen with a small margin,
    /// or amid their surroundings if they were not near. Rows that do not fit: the last. A stretch that does not fit:
    /// its end.
    void reveal(qint64 firstRow, qint64 lastRow, double start, double end);
    void scrollRows(qint64 rows);

Q_SIGNALS:
    /// What the viewport shows is at another place, or is of another height.
    void moved();

private:
    qint64 rowTop(qint64 row) const;
    void scrolled();
    void rememberPlace();
    qint64 rememberedPosition() const;
    bool lookAtVisibleRows();
    void updateExtents();
    void revealHorizontally(double start, double end);

    const TextStorage& storage_;
    const TextLayout& layout_;
    ScrollAxis vertical_;
    ScrollAxis horizontal_;
    QSize inset_{0, 0};
    QSize size_{0, 0};
    int caretWidth_ = 1;
    bool isWrapping_ = false;
    bool isSettling_ = false;
    QTimer settlingSoon_;
    double widestRow_ = 0;
    /// Whether that is of another text or font, and to be measured anew when the rows are looked at.
    bool isWidthOutdated_ = false;
    /// The width of a character when the font was last taken note of.
    double advance_;

    /// What is at the top of the viewport: the start of a row, and how far it is scrolled past the row's top.
    qint64 topOffset_ = 0;
    qint64 pixelsPastTop_ = 0;
};

} // namespace quelm
