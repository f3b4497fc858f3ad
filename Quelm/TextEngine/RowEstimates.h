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

/// How many rows each of some lines is likely to have when lines wrap, from its length alone. O(their length).
std::vector<LineRows> estimatedRows(const TextRope& text, LineSpan lines, double wrapWidth, const TextFont& font);

} // namespace quelm
