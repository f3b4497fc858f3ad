#pragma once

#include <QtGlobal>

#include <cstdint>

namespace quelm {

class TextLayout;
class TextStorage;

/// Where a caret can be told to go.
enum class TextMotion : std::uint8_t {
    nextCharacter,
    previousCharacter,
    nextWord,
    previousWord,
    rowStart,
    rowEnd,
    lineStart,
    lineEnd,
    documentStart,
    documentEnd,
    // What follows keeps to a column.
    nextRow,
    previousRow,
    nextPage,
    previousPage,
};

constexpr bool keepsToColumn(TextMotion motion) {
    return motion >= TextMotion::nextRow;
}

/// Where motions lead in a text that is laid out. Pure, and O(log n) besides what stands near the place.
class TextNavigation {
public:
    /// Both must outlive this value, and the layout be that of the storage.
    TextNavigation(const TextStorage& storage, const TextLayout& layout) : storage_(storage), layout_(layout) {}

    struct Column {
        double x = 0;
        /// The rows of a page.
        qint64 pageRows = 1;
    };
    /// Upwards from the first row leads to the start of the text, downwards from the last one to its end. `column`
    /// counts for the motions that keep to one.
    qint64 destination(TextMotion motion, qint64 offset, const Column& column) const;

    /// The place between the characters of a row that is nearest to `x`, at which a caret is in that very row: the
    /// place after the last character of a wrapped row is at the start of the next.
    qint64 placeInRow(qint64 row, double x) const;
    /// The start of the character of a row that `x` is over; beside the text, the nearest place.
    qint64 characterInRow(qint64 row, double x) const;

private:
    qint64 rowEnd(qint64 row) const;
    qint64 placeInRowsFrom(qint64 offset, qint64 rows, double x) const;

    const TextStorage& storage_;
    const TextLayout& layout_;
};

} // namespace quelm
