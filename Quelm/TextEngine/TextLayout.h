#pragma once

#include "Quelm/TextEngine/TextFont.h"
#include "Quelm/TextEngine/TextRange.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QPainter;

namespace quelm {

/// Where the characters of a text storage stand: in rows of one height, a row a line, or several when lines wrap.
///
/// A line of up to `segmentLength` units is laid out as a whole: characters that need no neighbours to be shaped stand
/// side by side, each of its own width. A line with others, whose letters join or run from right to left, is shaped as
/// a whole, with bidirectional text, up to `joinedLength` units. A longer one stands on a grid of cells: a character's
/// place follows from counts in the text before it, and only the segments that are asked about are shaped, each stretch
/// of characters that join fitted to its cells. When lines wrap, a row is laid out by itself; where rows begin follows
/// from the widths of the characters in a line of up to `segmentLength` units, and from counts in the text before them
/// in a longer one. Nothing here ever walks through a whole long line.
///
/// Lengths are logical pixels; x is from the start of a row's text, and of 64 bits in range. Rows count from 0. Offsets
/// are UTF-16 units of the storage; a place between two rows of one wrapped line belongs to the later row.
/// For the main thread.
class TextLayout {
public:
    /// The longest line that is laid out as a whole, and about how much of a longer one is looked at a time.
    static constexpr qint64 segmentLength = 4096;
    /// The longest that is shaped as a whole, which costs a hundred times as much, when lines do not wrap.
    static constexpr qint64 joinedLength = 1024;

    /// `storage` must outlive the layout, which follows it only through `noteEdit` and `noteAttributes`.
    TextLayout(const TextStorage& storage, TextFont font);
    ~TextLayout();

    const TextFont& font() const;
    void setFont(const TextFont& font);

    /// Lines wrap, between words where they can, so that rows are no wider than this; absent (as at first): they never
    /// wrap. Spaces that a row ends with may take no room. O(length of the text) to begin to wrap.
    void setWrapWidth(std::optional<double> width);

    /// Characters were replaced, as `TextStorage::didProcessEditing` says; to be called before anything is asked, once
    /// an edit. O(log n) a line that was edited, and the length of short ones when lines wrap. A composition moves with
    /// the text.
    void noteEdit(TextRange range, qint64 delta);
    /// Attributes in the range were changed.
    void noteAttributes(TextRange range);

    /// Text of an input method, shown underlined at a place of the storage while the storage does not have it; an empty
    /// text for none. In a line that is laid out as a whole it moves what follows aside; in a longer one it covers it.
    struct Composition {
        qint64 offset = 0;
        QString text;
        /// Within `text`.
        int caret = 0;
    };
    void setComposition(const Composition& composition);
    const Composition& composition() const;

    // Rows.

    // When lines wrap, those of a text of more than `exactLength` units that were not looked at yet are taken to have
    // as many rows as their length lets expect. Any question about a row or an offset looks at its line, and where that
    // corrects the expectation, the numbers of all later rows shift. Whoever scrolls should therefore remember the
    // offset that the top row begins with, and ask `rowOf` for it again, rather than a number.

    /// The longest text whose rows are all laid out before they are counted.
    static constexpr qint64 exactLength = 2 * segmentLength;

    /// Exact when lines do not wrap, or the text is short. Rows beyond the last stand for the last everywhere below.
    qint64 rowCount() const;
    qint64 rowOf(qint64 offset) const;
    /// The units of a row, without the line feed that ends its line.
    TextRange rowRange(qint64 row) const;
    /// The line, from 0, that the row is of.
    qint64 lineOf(qint64 row) const;
    /// The first row of a line.
    qint64 firstRowOf(qint64 line) const;

    // Places in a row.

    /// Where a caret before the character at `offset` stands.
    double x(qint64 offset) const;
    /// Where the caret stands within the composition, if there is one at `offset`; otherwise as `x`.
    double caretX(qint64 offset) const;
    /// The row of that place: of a wrapped composition, another than `rowOf(offset)` perhaps.
    qint64 caretRow(qint64 offset) const;
    /// The offset between characters of the row that is nearest to `x`.
    qint64 offsetAt(qint64 row, double x) const;
    /// Whether `x` is to the right of where the row's text ends, or left of where it starts.
    bool isBesideText(qint64 row, double x) const;
    /// How wide the row's text is.
    double width(qint64 row) const;
    /// The stretches of x that the characters of `range` in the row take, clipped to [left, right] roughly. Several for
    /// bidirectional text. With `range` reaching past the row's line feed, a small stretch for that as well.
    std::vector<std::pair<double, double>> stretches(qint64 row, TextRange range, double left, double right) const;

    /// Draws the characters of a row in the colours that `color` has for their attributes now, the row's text starting
    /// at `origin`, its top left corner. Draws what meets [left, right] of x and little more.
    void paint(QPainter& painter, qint64 row, QPointF origin, double left, double right,
               const std::function<QColor(ColorRole)>& color) const;

    /// The laid out parts kept at this moment, for tests that see that work is bounded.
    int cachedPartCount() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace quelm
