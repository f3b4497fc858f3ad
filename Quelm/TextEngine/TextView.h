#pragma once

#include "Quelm/Foundation/ScrollAxis.h"
#include "Quelm/TextEngine/TextEditing.h"
#include "Quelm/TextEngine/TextLayout.h"

#include <QAbstractScrollArea>
#include <QSizeF>

#include <memory>
#include <optional>
#include <vector>

namespace quelm {

/// The widget of a text: shows a text storage in one fixed-pitch font, and edits it with keyboard, mouse, input methods,
/// clipboard and drag and drop as a platform text view does. Lines never wrap (as at first) or wrap to the width.
///
/// What it costs to show, scroll, type, click and select depends on what the viewport holds, not on the length of the
/// text or its lines. Offsets are UTF-16 units of the storage. For the main thread.
class TextView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit TextView(std::shared_ptr<TextStorage> storage, QWidget* parent = nullptr);
    ~TextView() override;

    TextStorage& textStorage() const;
    std::shared_ptr<TextStorage> sharedTextStorage() const;
    TextEditing& editing() const;
    TextLayout& textLayout() const;
    ScrollAxis& verticalAxis() const;
    ScrollAxis& horizontalAxis() const;

    /// The font before zooming.
    void setTextFont(const QFont& font);
    /// The space between the viewport's edges and the text.
    void setTextContainerInset(QSize inset);
    enum class Wrapping : std::uint8_t { none, toWidth };
    void setWrapping(Wrapping wrapping);

    /// Weakly held; see `TextEditing`.
    void setUndoManager(UndoManager* manager);
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);

    TextRange selectedRange() const;
    void setSelectedRange(TextRange range);

    /// Scrolls as little as possible until the stretch's end that the caret would be at can be seen, with the whole
    /// stretch where it fits.
    void scrollRangeToVisible(TextRange range);

    /// Draws attention to a stretch for a moment, as a search does to what it found.
    void showFindIndicator(TextRange range);
    bool isShowingFindIndicator() const;

    /// Stretches that are marked besides the selection (what a search has found near the viewport), in order.
    void setMarkedRanges(std::vector<TextRange> ranges);

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
    /// The offset of the character place nearest to a place of the viewport.
    qint64 offsetAt(const QPoint& place) const;

    // What menus and keys do, under the names of the menus.
    bool canCut() const;
    bool canCopy() const;
    bool canPaste() const;
    void cut();
    void copy();
    void paste();
    void deleteSelection();
    void selectAll();
    void undo();
    void redo();

Q_SIGNALS:
    /// The user changed the text: an edit, an undo or a redo.
    void textDidChange();
    void selectionDidChange();
    /// What the viewport shows moved, or its rows changed their place or height.
    void visibleAreaDidChange();
    void zoomDidChange();
};

} // namespace quelm
