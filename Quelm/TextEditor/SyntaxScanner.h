#pragma once

#include "Quelm/TextEngine/AttributeRuns.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/TextRope.h"

#include <string>

namespace quelm {

/// Recognises the keys, strings, numbers, words and punctuation of JSON, also of faulty JSON, from left to right: where
/// one token ends the next begins, and nothing that came before counts. A string ends at its quote or with its line,
/// unless a backslash stands before the line feed.
///
/// Offsets are UTF-16 units. The text is read as UTF-8 in windows that grow as the scan goes far: everything that tells
/// tokens apart is ASCII.
class SyntaxScanner {
public:
    /// Scans within `lines`, which stands between characters; a token is cut off at its end.
    SyntaxScanner(TextRope text, TextRange lines);

    /// Where the scan is, always between tokens.
    qint64 offset() const { return offset_; }
    /// Goes to a place within the lines, where a token may begin. O(log n).
    void moveTo(qint64 offset);

    /// Scans on to the first place between tokens at or after `target`, or to the end, and appends the runs that were
    /// passed. They are settled, except for a string with a line feed: its colour, and where it ends, depend on whether
    /// the next line is scanned with it.
    void scan(qint64 target, AttributeRunsBuilder& runs);

    /// How much of the text was read. What was read twice counts twice.
    qint64 bytesRead() const { return bytesRead_; }

private:
    void readWindow();
    void scanWindow(qint64 target, AttributeRunsBuilder& runs);

    const TextRope text_;
    const qint64 end_;
    const qint64 endByte_;
    qint64 offset_ = 0;
    /// The byte at `offset_`.
    qint64 byte_ = 0;
    qint64 bytesRead_ = 0;

    /// Whole characters from `windowByte_` on.
    std::string window_;
    qint64 windowByte_ = 0;
    bool isASCII_ = true;
    /// How much the next window holds at least, short of the end.
    std::size_t nextWindowSize_ = 1;
};

} // namespace quelm
