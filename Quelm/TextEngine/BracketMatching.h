#pragma once

#include <QtGlobal>

#include <cstdint>
#include <optional>

namespace quelm {

class TextRope;

/// The places, in UTF-16 units, of a bracket and of the one that it opens or closes with.
struct BracketPair {
    qint64 bracket = 0;
    qint64 partner = 0;

    friend bool operator==(const BracketPair&, const BracketPair&) = default;
};

/// How far from the caret, in UTF-8 bytes, brackets are looked for on either side. A caret moves many times a second:
/// with this bound the worst of its moves costs about half a millisecond, and almost all next to nothing, while a
/// partner beyond it would be thousands of lines away, where nobody sees it.
inline constexpr std::int64_t bracketSearchLimit = 256 * 1024;

/// The pair of the bracket before the caret, or else of the one after it: [ ], { }, outside of JSON strings, a string
/// ending with its quote or its line. Absent without such a bracket, when its partner is beyond the limit, or when the
/// brackets between the two leave one of the other kind in its place.
///
/// What begins earlier in the caret's line than the limit is told from the nearer text: whether a quote opens or closes
/// a string there follows from what stands beside quotes and backslashes, which may err for text that is not JSON.
std::optional<BracketPair> matchingBrackets(const TextRope& text, qint64 caret);

} // namespace quelm
