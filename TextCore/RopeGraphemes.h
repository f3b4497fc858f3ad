#pragma once

#include "TextCore/TextRope.h"

#include <cstdint>
#include <stop_token>

namespace quelm {

/// The number of extended grapheme clusters in a stretch of a text, which is taken by itself: nothing outside of it
/// joins its first or last character. The same as `graphemes::count` of its bytes. Stretches of ASCII characters
/// without carriage returns cost O(log n) whatever their length, others what `graphemes::count` costs.
std::int64_t clusterCount(const TextRope& text, ByteRange range);

/// How far so many clusters (0 or more, otherwise a programming error) reach from the start of the stretch, which is
/// taken by itself: the byte offset in the text where they end, the end of the stretch when it has no more than them.
/// Costs what it costs to count them, and does not look at the rest of the stretch. When asked to stop it returns soon,
/// with how far it came.
std::int64_t offsetAfterClusters(const TextRope& text, ByteRange range, std::int64_t clusters,
                                 const std::stop_token& stop = {});

} // namespace quelm
