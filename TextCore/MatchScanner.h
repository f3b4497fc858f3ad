#pragma once

#include "TextCore/SearchPattern.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quelm {

/// Walks through the matches in a stretch of a text from its start: the leftmost first, each beginning where the one
/// before ends or later, and all of them wholly within the stretch. It goes from block to block, so that whoever walks
/// can stop or count in between:
///
///     while (scanner.nextBlock())
///         while (const auto match = scanner.nextInBlock())
///
/// Holds the text; `pattern` must outlive it. Takes a block's worth of memory, and several times the longest match.
class MatchScanner {
public:
    MatchScanner(TextRope text, const SearchPattern& pattern, ByteRange within);

    /// About so many bytes a block.
    static constexpr std::int64_t blockLength = std::int64_t{64} << 10;

    /// Goes to the next block, whatever is left of this one; false when the stretch is exhausted.
    bool nextBlock();

    /// The next match that begins in the block; absent when there is none, before the first block, and after the last.
    std::optional<ByteRange> nextInBlock();

    /// Passes the matches that are left in the block, and returns their number.
    std::int64_t countInBlock();

    /// Matches that begin before this place have been in this block or earlier ones.
    std::int64_t blockEnd() const { return blockEnd_; }

private:
    void discardBefore(std::int64_t place);
    void readUpTo(std::int64_t place);

    TextRope text_;
    const SearchPattern& pattern_;
    const ByteRange within_;

    /// The bytes of the text from `bufferStart_` to `bufferEnd_`, and room for the reading beyond that vectors do.
    std::vector<char> buffer_;
    std::int64_t bufferStart_;
    std::int64_t bufferEnd_;

    std::int64_t blockStart_;
    std::int64_t blockEnd_;
    /// Matches begin here or later: the end of the last one.
    std::int64_t nextStart_;

    /// One bit for every place of the block, and how far they have been looked at.
    std::vector<std::uint64_t> masks_;
    std::size_t maskIndex_ = 0;
    std::size_t maskCount_ = 0;
    std::uint64_t mask_ = 0;
};

} // namespace quelm
