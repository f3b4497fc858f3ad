#include "Quelm/TextEditor/MatchMarks.h"

#include "Quelm/TextEditor/SearchRanges.h"
#include "Quelm/TextEngine/TextView.h"

#include <algorithm>

namespace quelm {

namespace {

/// Text beside the viewport that is searched as well, in units: what scrolls in next is marked already.
constexpr qint64 margin = 4096;

/// Rows that hold no more than this are searched as a whole.
constexpr qint64 longestWhole = qint64{64} << 10;

/// The part of a row that can be seen, which may be a tiny one of a long line.
TextRange visiblePart(const TextView& view, const TextView::VisibleRow& row) {
    const int y = row.top + row.height / 2;
    const qint64 left = view.offsetAt({0, y});
    const qint64 right = view.offsetAt({view.viewport()->width(), y});
    return TextRange::between(std::min(left, right), std::max(left, right));
}

/// The stretches to search, in order and apart from each other.
std::vector<TextRange> stretchesNearViewport(const TextView& view) {
    std::vector<TextRange> stretches;
    const qint64 length = view.textStorage().length();
    const auto add = [&](TextRange part) {
        const qint64 start = std::max<qint64>(part.location - margin, 0);
        const qint64 end = std::min(std::min(part.end(), part.location + longestWhole) + margin, length);
        if (!stretches.empty() && start <= stretches.back().end())
            stretches.back() = TextRange::between(stretches.back().location, std::max(end, stretches.back().end()));
        else if (start < end)
            stretches.push_back(TextRange::between(start, end));
    };

    const TextRange visible = view.visibleRange();
    if (visible.length <= longestWhole)
        add(visible);
    else
        for (const TextView::VisibleRow& row : view.visibleRows())
            add(visiblePart(view, row));
    return stretches;
}

} // namespace

std::vector<TextRange> matchesNearViewport(const TextView& view, const SearchPattern& pattern,
                                           const MatchIndex* index) {
    const TextRope& text = view.textStorage().text();
    const bool isPresent = index && index->text().isSameValue(text) && index->pattern() == pattern;
    std::vector<TextRange> result;
    for (const TextRange& stretch : stretchesNearViewport(view)) {
        ByteRange searched = byteRange(text, stretch);
        if (isPresent) {
            const auto first = index->firstFrom(searched.location);
            if (!first || first->range.location >= searched.end())
                continue;
            searched = ByteRange::between(first->range.location, searched.end());
        }
        const std::vector<TextRange> found = textRanges(text, allMatches(text, pattern, searched));
        result.insert(result.end(), found.begin(), found.end());
    }
    return result;
}

} // namespace quelm
