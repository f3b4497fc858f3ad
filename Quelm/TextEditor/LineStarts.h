#pragma once

#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/TextRope.h"

#include <utility>

namespace quelm {

/// Where the lines of a text begin, as a list of UTF-16 offsets in ascending order: the first is 0, each other one is
/// after a line feed. It is a view of a snapshot, so that every question and every edit is O(log n).
class LineStarts {
public:
    /// The list of a text; [0] for an empty one.
    explicit LineStarts(TextRope text = {}) : text_(std::move(text)) {}

    /// The number of lines.
    qint64 count() const { return text_.lineCount(); }

    /// The entry at an index from 0 to `count() - 1`.
    qint64 at(qint64 index) const { return text_.summaryBeforeLine(index).utf16; }

    /// The number of entries that are no greater than an offset: the line, from 1, that it is in.
    qint64 countUpTo(qint64 offset) const;

    /// The text was edited: `range` is what the edit covers now, `delta` by how much the text grew, `text` what it is
    /// now. Entries that do not fit in 64 bits are a programming error.
    void noteEdit(TextRange range, qint64 delta, TextRope text);

private:
    TextRope text_;
};

} // namespace quelm
