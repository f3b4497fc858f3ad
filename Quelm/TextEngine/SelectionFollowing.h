#pragma once

#include "Quelm/TextEngine/TextSelection.h"

namespace quelm {

class TextRope;

/// Where a selection of the text `before` is in `after`, when an edit that was not made at the selection led from one
/// to the other: `range` is what the edit covers now, `delta` by how much the text grew.
///
/// Places before the edit stay and those after it move with their characters; one within the replaced stretch stays as
/// far in as that reaches. When the whole text was replaced, each place keeps its line and column (in UTF-16 units), or
/// goes to the end of the line, or of the text, when there is no such place. O(log n).
TextSelection followedSelection(TextSelection selection, const TextRope& before, const TextRope& after, TextRange range,
                                qint64 delta);

} // namespace quelm
