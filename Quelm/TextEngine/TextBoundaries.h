#pragma once

#include "Quelm/TextEngine/TextRange.h"

namespace quelm {

class TextRope;

/// Places in a text that a caret stops at, all in UTF-16 units; an `offset` within a surrogate pair is never a result.
/// Each looks at the neighbourhood of the place alone, whatever the length of the text and its lines: a cluster or word
/// longer than some thousand units is cut there.
namespace boundaries {

/// The next place between grapheme clusters (Unicode Standard Annex #29) after `offset`; the end of the text there.
qint64 nextCluster(const TextRope& text, qint64 offset);
/// The last one before `offset`; 0 there.
qint64 previousCluster(const TextRope& text, qint64 offset);
/// `offset` itself where it is between clusters, else the start of its cluster.
qint64 clusterStart(const TextRope& text, qint64 offset);
/// Where Backspace ends: the last character before `offset` goes, of a cluster only what was typed last (a mark, but
/// all of an emoji sequence, a flag, a CR LF or a surrogate pair).
qint64 backspaceStart(const TextRope& text, qint64 offset);

// Words are runs of letters, digits and underscores, a number with its sign, point and exponent among them; runs of
// other characters than spaces are stopped at in the same way.

/// The start of the next word after `offset`, as Ctrl+Right goes: past the rest of this word and the spaces after it,
/// stopping before and after a line feed.
qint64 nextWord(const TextRope& text, qint64 offset);
/// The start of the word before `offset`, as Ctrl+Left goes: it stops at the same places.
qint64 previousWord(const TextRope& text, qint64 offset);
/// What a double click at a character selects: the word, or the run of spaces, or the one other cluster, never with a
/// line feed. At the end of a line, that before it; nothing in an empty line.
TextRange wordAt(const TextRope& text, qint64 offset);

} // namespace boundaries
} // namespace quelm
