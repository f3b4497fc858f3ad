#pragma once

#include "Quelm/TextEngine/TextRange.h"

#include <QAccessible>

#include <optional>

namespace quelm {

class TextLayout;
class TextStorage;

/// The units that a screen reader goes through a text by: grapheme clusters, words with the spaces after them,
/// sentences, rows of the layout and lines, these two with their line feed. Units of one kind lie end to end, so that
/// whoever goes on from the end of one gets the next.
///
/// No unit is longer than about `longestUnit`: what is longer comes in pieces, cut at fixed distances from the start of
/// its line, row or text, so that the piece stays the same while the caret moves within it. O(log n + length of the
/// unit).
class ReadingUnits {
public:
    static constexpr qint64 longestUnit = 4096;

    /// Both must outlive this value, and the layout be that of the storage.
    ReadingUnits(const TextStorage& storage, const TextLayout& layout) : storage_(storage), layout_(layout) {}

    /// The unit with the character after `offset`, a place within the text. At its end: the last sentence, row or line,
    /// where a caret would still be, but the empty stretch for a cluster or word.
    TextRange unitAt(qint64 offset, QAccessible::TextBoundaryType kind) const;
    /// The unit before the one at `offset`; absent when that is the first.
    std::optional<TextRange> unitBefore(qint64 offset, QAccessible::TextBoundaryType kind) const;
    /// The unit after the one at `offset`; absent when that is the last.
    std::optional<TextRange> unitAfter(qint64 offset, QAccessible::TextBoundaryType kind) const;

private:
    TextRange piece(TextRange whole, qint64 offset, qint64 longest = longestUnit) const;
    TextRange cluster(qint64 offset) const;
    TextRange word(qint64 offset) const;
    TextRange sentence(qint64 offset) const;
    TextRange row(qint64 offset) const;

    const TextStorage& storage_;
    const TextLayout& layout_;
};

} // namespace quelm
