#pragma once

#include "TextCore/RopeSearch.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <vector>

namespace quelm {

/// How far a search has come, readable while it runs.
struct SearchProgress {
    std::atomic<std::int64_t> bytes = 0;
    std::atomic<std::int64_t> matches = 0;
};

/// All matches of a pattern in a text, numbered from 0, none overlapping another, each the leftmost after the one
/// before. It keeps some bytes for every block that has matches, at most 24 for 64 KB of text, and looks at one or two
/// blocks again whenever it is asked. A value; may be used on any thread.
///
/// Invariants:
/// 1. The blocks stand in order, do not overlap, and each has a match that begins in it.
/// 2. A block begins with its first match, and its matches begin before its end.
/// 3. `matchesBefore` of a block is the number of matches in all blocks before it.
class MatchIndex {
public:
    /// O(length of the text). Absent when it was stopped.
    static std::optional<MatchIndex> build(const TextRope& text, const SearchPattern& pattern,
                                           const std::stop_token& stop = {}, SearchProgress* progress = nullptr);

    const TextRope& text() const { return text_; }
    const SearchPattern& pattern() const { return pattern_; }
    std::int64_t count() const { return count_; }

    struct NumberedMatch {
        std::int64_t number = 0;
        ByteRange range;
        friend bool operator==(const NumberedMatch&, const NumberedMatch&) = default;
    };

    /// `number` must be less than `count()`.
    ByteRange match(std::int64_t number) const;
    /// The first match that begins at the place or after it.
    std::optional<NumberedMatch> firstFrom(std::int64_t place) const;
    /// The last match that ends at the place or before it.
    std::optional<NumberedMatch> lastBefore(std::int64_t place) const;
    /// The match that is exactly this stretch.
    std::optional<NumberedMatch> matchAt(ByteRange range) const;

    /// Aborts if an invariant does not hold. O(length of the text).
    void checkInvariants() const;

private:
    struct Block {
        std::int64_t start;
        std::int64_t end;
        std::int64_t matchesBefore;
    };

    MatchIndex(TextRope text, SearchPattern pattern) : text_(std::move(text)), pattern_(std::move(pattern)) {}

    /// Calls `visit(NumberedMatch)` for the block's matches until it returns false.
    template <class Visit>
    void forEachMatch(const Block& block, Visit visit) const;
    /// The index of the last block that begins at the place or before it, from 1; 0 for none.
    std::size_t blocksUpTo(std::int64_t place) const;

    TextRope text_;
    SearchPattern pattern_;
    std::vector<Block> blocks_;
    std::int64_t count_ = 0;
};

} // namespace quelm
