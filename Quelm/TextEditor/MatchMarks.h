#pragma once

#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/MatchIndex.h"

#include <vector>

namespace quelm {

class TextView;

/// The matches in and around what a view shows, found anew in its present text. `index`, null or of an older text, only
/// decides which of overlapping occurrences count. What it costs depends on the size of the viewport, not on the text
/// or its lines.
std::vector<TextRange> matchesNearViewport(const TextView& view, const SearchPattern& pattern, const MatchIndex* index);

} // namespace quelm
