#pragma once

#include "Quelm/TextEngine/TextFont.h"
#include "Quelm/TextEngine/WrappedRows.h"
#include "TextCore/TextRope.h"

#include <vector>

namespace quelm {

/// Lines that follow each other.
struct LineSpan {
    qint64 first = 0;
    qint64 count = 0;
};

/// How many rows each of some lines is likely to have when lines wrap, from its length alone; exactly one where a short
/// line of printable ASCII fits into it. O(their length), but no more than O(lines * log n) when they are long.
std::vector<LineRows> estimatedRows(const TextRope& text, LineSpan lines, double wrapWidth, const TextFont& font);

} // namespace quelm
