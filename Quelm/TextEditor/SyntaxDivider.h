#pragma once

#include "TextCore/TextRope.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace quelm {

/// Divides a long stretch of JSON, or of something like it, into parts that can be coloured each for itself: no token,
/// no run, and nothing that a token's colour depends on goes on from one part to the next. It looks for strings alone,
/// which takes much less than to recognise tokens.
class SyntaxDivider {
public:
    /// How many bytes a part has: the least, at least 1, and as many more as it takes to find a place to end at, up to
    /// the most.
    struct Lengths {
        std::int64_t least = 1;
        std::int64_t most = 1;
    };
    /// Outside of tokens at the start of `range`.
    SyntaxDivider(TextRope text, ByteRange range, Lengths lengths);

    struct Part {
        ByteRange bytes;
        /// No string in it has a line feed.
        bool isSettled = false;
    };
    /// The part after the last one; nothing if there is no place where it could end, with that length and short of the
    /// end of the range. Then there is nothing more to ask.
    std::optional<Part> next();

    std::int64_t bytesRead() const { return place_ - start_; }

private:
    std::string_view bytesAfter(std::int64_t place, std::int64_t limit) const;

    /// Goes on to a place in the piece that the present place is in.
    void skipTo(const char* place, const char* end);
    /// The first place where a part may end, or the end.
    const char* endOfPart(const char* place, const char* end);

    const TextRope text_;
    const std::int64_t start_;
    const std::int64_t end_;
    const Lengths lengths_;
    std::int64_t place_;
    /// Whether the place is within a string, and what was seen before (see the implementation).
    std::uint64_t state_ = 0;
    /// The byte before the place.
    char before_ = 0;
};

} // namespace quelm
