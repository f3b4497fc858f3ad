#pragma once

#include <QUuid>
#include <QtGlobal>

#include <stop_token>

namespace quelm {

class TextRope;

/// A request to move the caret to a line and a column. Every location made is a value of its own, also for the same
/// place: a repeated request moves the caret again.
struct TextLocation {
    TextLocation(qint64 line, qint64 column) : line(line), column(column) {}

    /// From 1.
    qint64 line;
    /// In the line's grapheme clusters, from 1.
    qint64 column;
    QUuid id = QUuid::createUuid();

    /// The place in a text, in UTF-16 units. What is before the first line or column is that; a line past the end is
    /// the last line; a column past a line's end is the place after its line feed. O(log n) for ASCII lines; characters
    /// of other lines are read as far as the column. When asked to stop it returns soon, with a place of no meaning.
    qint64 offset(const TextRope& text, const std::stop_token& stop = {}) const;

    /// Whether `offset` may read more of the text than the main thread has time for. O(log n).
    bool takesLong(const TextRope& text) const;

    friend bool operator==(const TextLocation&, const TextLocation&) = default;
};

} // namespace quelm
