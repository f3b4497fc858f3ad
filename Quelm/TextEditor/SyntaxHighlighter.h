#pragma once

#include "Quelm/TextEditor/SyntaxRecoloring.h"
#include "Quelm/TextEngine/TextRange.h"

#include <QFont>

namespace quelm {

class TextStorage;

/// Colours the keys, strings, numbers, literals and punctuation of JSON in a text storage, by a scan that needs no
/// valid JSON. For the main thread.
///
/// The outcome is as if every line that an edit touched were scanned from its start to its end. What is done is less:
/// the scan begins shortly before the edit and ends where it meets with an earlier one, so that a key costs
/// O(log n) as a rule in a line of any length. An edit that turns all that follows it, as a quote at the front of a
/// line does, is O(length of the line); but of what is far from the edit it takes a look for strings alone, and the
/// colours are made when somebody asks for them.
class SyntaxHighlighter {
public:
    /// The longest text, in UTF-16 units, that is coloured; longer ones get the base attributes alone.
    static constexpr qint64 longestColoredText = 3'000'000;

    explicit SyntaxHighlighter(const SyntaxScanSizes& sizes = {}) : sizes_(sizes) {}

    /// The font of all text. Takes an application.
    static const QFont& textFont();

    /// Colours the lines that `range` touches anew; in texts too long to be coloured, gives that very range the base
    /// attributes. What lies outside of the text is left out of account. Returns how many bytes were scanned.
    qint64 highlight(TextStorage& storage, TextRange range, qint64 longestText = longestColoredText) const;

private:
    SyntaxScanSizes sizes_;
};

} // namespace quelm
