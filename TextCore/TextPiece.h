#pragma once

#include "TextCore/SummaryTree.h"
#include "TextCore/TextSummary.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace quelm {

class SharedText;

/// A piece of a rope: some kilobytes of well-formed UTF-8, in memory that others may share, and the sums over them.
class TextPiece {
public:
    /// The most bytes of a piece.
    static constexpr std::size_t capacity = 4096;

    TextPiece() = default;

    /// `bytes`, at most `capacity`, are kept alive by `owner`.
    TextPiece(std::shared_ptr<const void> owner, std::string_view bytes);

    /// Both texts in memory of the piece's own.
    static TextPiece joining(std::string_view front, std::string_view back);

    std::string_view view() const { return {start_, byteCount_}; }
    TextSummary summary() const { return {byteCount_, utf16Count_, lineFeeds_, carriageReturns_, threeByteForms_}; }

    /// A part of this piece, sharing its memory. The position and the end stand between characters.
    TextPiece slice(std::size_t position, std::size_t count) const;

private:
    std::shared_ptr<const void> owner_;
    const char* start_ = nullptr;
    std::uint32_t byteCount_ = 0;
    std::uint32_t utf16Count_ = 0;
    std::uint32_t lineFeeds_ = 0;
    std::uint32_t carriageReturns_ = 0;
    std::uint32_t threeByteForms_ = 0;
};

/// How pieces are summed up in a tree.
struct TextPieceTraits {
    using Element = TextPiece;
    using Summary = TextSummary;
    static constexpr std::uint32_t leafCapacity = 16;
    static TextSummary summarize(const TextPiece& piece) { return piece.summary(); }
};

using PieceTree = SummaryTree<TextPieceTraits>;

/// The pieces of a text of any length that `owner` keeps alive, of nearly equal size. O(n).
PieceTree piecesOf(const std::shared_ptr<const void>& owner, std::string_view text);

/// One tree after the other, small pieces at the seam joined.
PieceTree joined(const PieceTree& left, const PieceTree& right);

/// Two adjacent pieces of a tree are together larger than this, if that was so of the trees joined: typing makes few
/// pieces.
inline constexpr std::size_t leastPairOfPieces = 1024;

} // namespace quelm
