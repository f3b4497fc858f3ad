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
/// A line of up to `segmentLength` units is shaped as a whole, with bidirectional text. A longer one stands on a grid
/// of cells: a character's place follows from counts in the text before it, and only the segments that are asked about
/// are shaped, each stretch of other than printable ASCII characters fitted to its cells. Nothing here ever walks
/// through a whole long line.
///
/// Lengths are logical pixels; x is from the start of a row's text, and of 64 bits in range. Rows count from 0. Offsets
/// are UTF-16 units of the storage; a place between two rows of one wrapped line belongs to the later row.
/// For the main thread.
class TextLayout {
public:
    /// The longest line that is shaped as a whole, and about how much of a longer one is shaped at a time.
    static constexpr qint64 segmentLength = 4096;

    /// `storage` must outlive the layout, which follows it only through `noteEdit` and `noteAttributes`.
    TextLayout(const TextStorage& storage, TextFont font);
    ~TextLayout();

    const TextFont& font() const;
    void setFont(const TextFont& font);

    /// Lines wrap, between words where they can, so that rows are no wider than this; absent (as at first): they never
    /// wrap.
    void setWrapWidth(std::optional<double> width);

    /// Characters were replaced, as `TextStorage::didProcessEditing` says. O(log n) when lines do not wrap.
    void noteEdit(TextRange range, qint64 delta);
    /// Attributes in the range were changed.
    void noteAttributes(TextRange range);

    /// Text of an input method, shown at a place of the storage as if it stood there (underlined, in `ranges` of
    /// formats as the input method says) while the storage does not have it; an empty text for none.
    struct Composition {
        qint64 offset = 0;
        QString text;
        /// Within `text`.
        int caret = 0;
    };
    void setComposition(const Composition& composition);
    const Composition& composition() const;

    // Rows.

    /// Exact when lines do not wrap; else an estimate for lines that were not looked at yet, which it may take a
    /// look to correct.
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
    /// Where the caret stands within the composition, or as `x` without one.
    double caretX(qint64 offset) const;
    /// The offset between characters of the row that is nearest to `x`.
    qint64 offsetAt(qint64 row, double x) const;
    /// Whether `x` is to the right of where the row's text ends, or left of where it starts.
    bool isBesideText(qint64 row, double x) const;
    /// How wide the row's text is.
    double width(qint64 row) const;
    /// The stretches of x that the characters of `range` in the row take, clipped to [left, right] roughly. Several for
    /// bidirectional text. With `range` reaching past the row's line feed, a small stretch for that as well.
    std::vector<std::pair<double, double>> stretches(qint64 row, TextRange range, double left, double right) const;

    /// The characters of a row between two places, and their sizes: draws them with their attributes' colours (or all
    /// of them in `color`, for disabled looks), the row's text starting at `origin`, its top left corner. Draws what
    /// meets [left, right] of x and little more.
    void paint(QPainter& painter, qint64 row, QPointF origin, double left, double right,
               const std::function<QColor(ColorRole)>& color) const;

    /// The laid out parts kept at this moment, for tests that see that work is bounded.
    int cachedPartCount() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace quelm
