#include "Quelm/TextEngine/TextNavigation.h"

#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextLayout.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <algorithm>

namespace quelm {

qint64 TextNavigation::destination(TextMotion motion, qint64 offset, const Column& column) const {
    const TextRope& text = storage_.text();
    switch (motion) {
    case TextMotion::nextCharacter:
        return boundaries::nextCluster(text, offset);
    case TextMotion::previousCharacter:
        return boundaries::previousCluster(text, offset);
    case TextMotion::nextWord:
        return boundaries::nextWord(text, offset);
    case TextMotion::previousWord:
        return boundaries::previousWord(text, offset);
    case TextMotion::rowStart:
        return layout_.rowRange(layout_.rowOf(offset)).location;
    case TextMotion::rowEnd:
        return rowEnd(layout_.rowOf(offset));
    case TextMotion::lineStart:
        return storage_.lineContents(storage_.lineAt(offset)).location;
    case TextMotion::lineEnd:
        // Before a CR LF, not within it.
        return boundaries::clusterStart(text, storage_.lineContents(storage_.lineAt(offset)).end());
    case TextMotion::documentStart:
        return 0;
    case TextMotion::documentEnd:
        return storage_.length();
    case TextMotion::nextRow:
        return placeInRowsFrom(offset, 1, column.x);
    case TextMotion::previousRow:
        return placeInRowsFrom(offset, -1, column.x);
    case TextMotion::nextPage:
        return placeInRowsFrom(offset, column.pageRows, column.x);
    case TextMotion::previousPage:
        return placeInRowsFrom(offset, -column.pageRows, column.x);
    }
    return offset;
}

qint64 TextNavigation::placeInRow(qint64 row, double x) const {
    return std::min(layout_.offsetAt(row, x), rowEnd(row));
}

qint64 TextNavigation::characterInRow(qint64 row, double x) const {
    const qint64 nearest = placeInRow(row, x);
    if (layout_.isBesideText(row, x) || layout_.x(nearest) <= x)
        return nearest;
    return std::max(boundaries::previousCluster(storage_.text(), nearest), layout_.rowRange(row).location);
}

qint64 TextNavigation::rowEnd(qint64 row) const {
    const TextRange range = layout_.rowRange(row);
    const bool isWrapped = row + 1 < layout_.rowCount() && layout_.rowRange(row + 1).location == range.end();
    // The line break may be a CR LF, whose halves belong together.
    if (!isWrapped || range.isEmpty())
        return boundaries::clusterStart(storage_.text(), range.end());
    return std::max(boundaries::previousCluster(storage_.text(), range.end()), range.location);
}

qint64 TextNavigation::placeInRowsFrom(qint64 offset, qint64 rows, double x) const {
    const qint64 row = layout_.rowOf(offset);
    if (rows < 0 && row == 0)
        return 0;
    const qint64 last = layout_.rowCount() - 1;
    if (rows > 0 && row >= last)
        return storage_.length();
    return placeInRow(std::clamp<qint64>(row + rows, 0, last), x);
}

} // namespace quelm
