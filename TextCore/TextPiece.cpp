#include "TextCore/TextPiece.h"

#include "TextCore/UTF8Scan.h"

#include <cstring>
#include <vector>

namespace quelm {

namespace {

std::uint32_t small(std::int64_t count) {
    return static_cast<std::uint32_t>(count);
}

/// The last place not after `position` that stands between characters, and not between a carriage return and its line
/// feed, so that most cuts part no grapheme cluster of a plain text.
std::size_t placeToCut(std::string_view text, std::size_t position) {
    while (position > 0 && (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80)
        --position;
    if (position > 0 && text[position] == '\n' && text[position - 1] == '\r')
        --position;
    return position;
}

} // namespace

TextPiece::TextPiece(std::shared_ptr<const void> owner, std::string_view bytes)
    : owner_(std::move(owner)), start_(bytes.data()) {
    require(bytes.size() <= capacity, "a piece of a text has a bounded size");
    const TextSummary summary = utf8::summarize(bytes);
    byteCount_ = small(summary.bytes);
    utf16Count_ = small(summary.utf16);
    lineFeeds_ = small(summary.lineFeeds);
    carriageReturns_ = small(summary.carriageReturns);
    threeByteForms_ = small(summary.threeByteForms);
}

TextPiece TextPiece::joining(std::string_view front, std::string_view back) {
    const std::size_t size = front.size() + back.size();
    auto memory = std::make_shared_for_overwrite<char[]>(size);
    if (!front.empty())
        std::memcpy(memory.get(), front.data(), front.size());
    if (!back.empty())
        std::memcpy(memory.get() + front.size(), back.data(), back.size());
    const char* start = memory.get();
    return TextPiece(std::shared_ptr<const void>(std::move(memory), start), std::string_view(start, size));
}

TextPiece TextPiece::slice(std::size_t position, std::size_t count) const {
    return TextPiece(owner_, view().substr(position, count));
}

PieceTree piecesOf(const std::shared_ptr<const void>& owner, std::string_view text) {
    // Cuts move back by up to four bytes, which must not make the piece after them too large.
    constexpr std::size_t aim = TextPiece::capacity - 8;
    std::vector<TextPiece> pieces;
    const std::size_t count = (text.size() + aim - 1) / aim;
    pieces.reserve(count);
    std::size_t start = 0;
    for (std::size_t piece = 1; piece <= count; ++piece) {
        const std::size_t nominal = text.size() / count * piece + text.size() % count * piece / count;
        const std::size_t end = piece == count ? text.size() : placeToCut(text, nominal);
        pieces.emplace_back(owner, text.substr(start, end - start));
        start = end;
    }
    return PieceTree(pieces);
}

PieceTree joined(const PieceTree& left, const PieceTree& right) {
    if (left.isEmpty() || right.isEmpty())
        return left + right;
    const std::string_view front = left.last().view();
    const std::string_view back = right.first().view();
    if (front.size() + back.size() > leastPairOfPieces)
        return left + right;
    // The neighbours of the joined piece were no smaller pairs with either half.
    const PieceTree seam = PieceTree::single(TextPiece::joining(front, back));
    return left.withoutLast() + seam + right.withoutFirst();
}

} // namespace quelm
