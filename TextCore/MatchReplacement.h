#pragma once

#include "TextCore/RopeSearch.h"

#include <cstdint>
#include <expected>
#include <stop_token>
#include <string_view>

namespace quelm {

/// All matches of a text replaced at once, as one edit.
struct MatchReplacement {
    std::int64_t count = 0;
    /// From the start of the first match to the end of the last, in the text that was searched.
    ByteRange range;
    /// What takes the place of that stretch: longer pieces between matches are shared with the searched text.
    TextRope replacement;
};

enum class MatchReplacementFailure : std::uint8_t {
    stopped,
    /// The result would be longer than the limit, or than memory.
    tooLong,
};

/// Replaces all matches in the text with `replacement`, well-formed UTF-8 that may be empty. The whole text would be at
/// most `longestResult` bytes long afterwards. O(length of the text and of the result), whatever the number of matches.
std::expected<MatchReplacement, MatchReplacementFailure>
replacingMatches(const TextRope& text, const SearchPattern& pattern, std::string_view replacement,
                 std::int64_t longestResult, const std::stop_token& stop = {});

} // namespace quelm
