#include "Quelm/TextEngine/BracketMatching.h"

#include "Quelm/TextEngine/StringState.h"
#include "TextCore/TextRope.h"

#include <algorithm>
#include <cstdlib>
#include <ranges>
#include <string_view>
#include <vector>

namespace quelm {

namespace {

struct Bracket {
    std::int64_t place = 0;
    char form = '\0';
};

bool isOpening(char byte) {
    return byte == '[' || byte == '{';
}

bool isClosing(char byte) {
    return byte == ']' || byte == '}';
}

bool isPair(char opening, char closing) {
    return opening == '[' ? closing == ']' : closing == '}';
}

/// The part of a chunk before a place in it.
std::string_view partBefore(const TextRope::Chunk& chunk, std::int64_t place) {
    return chunk.bytes.substr(0, static_cast<std::size_t>(place - chunk.location));
}

std::string_view partAfter(const TextRope::Chunk& chunk, std::int64_t place) {
    return chunk.bytes.substr(static_cast<std::size_t>(place - chunk.location));
}

/// Goes on from `state` through bytes that begin at `location` and adds the brackets outside of strings.
void collect(std::string_view bytes, std::int64_t location, StringState& state, std::vector<Bracket>& brackets) {
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const char byte = bytes[index];
        if (state.advance(byte) && (isOpening(byte) || isClosing(byte)))
            brackets.push_back({location + static_cast<std::int64_t>(index), byte});
    }
}

/// Finds what closes an opening bracket, or opens a closing one, by counting the brackets on the way.
class PartnerSearch {
public:
    explicit PartnerSearch(Bracket bracket) : bracket_(bracket), depth_(0) {}

    /// Takes the next bracket of the way, first of all the searched one itself. True when it ends the search.
    bool take(Bracket bracket) {
        depth_ += isOpening(bracket.form) == isOpening(bracket_.form) ? 1 : -1;
        if (depth_ > 0)
            return false;
        const bool isPartner =
            isOpening(bracket_.form) ? isPair(bracket_.form, bracket.form) : isPair(bracket.form, bracket_.form);
        if (isPartner && std::abs(bracket.place - bracket_.place) <= bracketSearchLimit)
            partner_ = bracket.place;
        return true;
    }

    std::optional<std::int64_t> partner() const { return partner_; }

private:
    Bracket bracket_;
    std::int64_t depth_;
    std::optional<std::int64_t> partner_;
};

std::optional<std::int64_t> partnerAfter(const TextRope& text, Bracket bracket) {
    PartnerSearch search(bracket);
    StringState state = StringState::outside();
    std::vector<Bracket> brackets;
    const std::int64_t end = std::min(text.byteCount(), bracket.place + bracketSearchLimit + 1);
    for (std::int64_t place = bracket.place; place < end;) {
        const std::string_view bytes = partAfter(text.chunkAfter(place), place);
        brackets.clear();
        collect(bytes, place, state, brackets);
        if (std::ranges::any_of(brackets, [&](Bracket next) { return search.take(next); }))
            break;
        place += static_cast<std::int64_t>(bytes.size());
    }
    return search.partner();
}

/// A stretch that is scanned in one go on the way back.
struct Block {
    std::int64_t start = 0;
    /// Whether a line, or the text, begins there.
    bool beginsLine = true;
};

/// The block before a place: back to the start of a line some kilobytes away, or into a line that is longer.
Block blockBefore(const TextRope& text, std::int64_t end) {
    constexpr std::int64_t longestBlock = 16 * 1024;
    std::int64_t start = end;
    while (start > 0 && end - start < longestBlock) {
        const TextRope::Chunk chunk = text.chunkBefore(start);
        const std::size_t lineFeed = partBefore(chunk, start).find('\n');
        const std::int64_t lineStart = chunk.location + static_cast<std::int64_t>(lineFeed) + 1;
        if (lineFeed != std::string_view::npos && lineStart < end)
            return {lineStart, true};
        start = chunk.location;
    }
    return {start, start == 0};
}

/// The brackets of [start, end) when the scan begins in `state`, which becomes the one at `end`.
std::vector<Bracket> bracketsOf(const TextRope& text, ByteRange range, StringState& state) {
    std::vector<Bracket> brackets;
    std::int64_t place = range.location;
    text.forEachChunk(range, [&](std::string_view bytes) {
        collect(bytes, place, state, brackets);
        place += static_cast<std::int64_t>(bytes.size());
    });
    return brackets;
}

std::optional<std::int64_t> partnerBefore(const TextRope& text, Bracket bracket) {
    PartnerSearch search(bracket);
    search.take(bracket);
    StringState known = StringState::outside();
    for (std::int64_t end = bracket.place; end > 0 && bracket.place - end <= bracketSearchLimit;) {
        const Block block = blockBefore(text, end);
        const ByteRange range = ByteRange::between(block.start, end);
        StringState start = StringState::outside();
        StringState state = start;
        std::vector<Bracket> brackets = bracketsOf(text, range, state);
        // Within a line, the state at the end of the block tells the one at its start.
        if (!block.beginsLine && state.isInside() != known.isInside()) {
            start = StringState::insideAt(text, block.start);
            state = start;
            brackets = bracketsOf(text, range, state);
        }
        if (std::ranges::any_of(brackets | std::views::reverse, [&](Bracket next) { return search.take(next); }))
            break;
        end = block.start;
        known = start;
    }
    return search.partner();
}

/// The partner of what may be a bracket outside of strings.
std::optional<BracketPair> pairOf(const TextRope& text, Bracket bracket) {
    if (!isOpening(bracket.form) && !isClosing(bracket.form))
        return std::nullopt;
    if (StringState::at(text, bracket.place, bracketSearchLimit).isInside())
        return std::nullopt;
    const auto partner = isOpening(bracket.form) ? partnerAfter(text, bracket) : partnerBefore(text, bracket);
    if (!partner)
        return std::nullopt;
    return BracketPair{text.summaryBefore(bracket.place).utf16, text.summaryBefore(*partner).utf16};
}

} // namespace

std::optional<BracketPair> matchingBrackets(const TextRope& text, qint64 caret) {
    const std::int64_t place = text.summaryBeforeUTF16(caret).bytes;
    if (place > 0) {
        if (const auto pair = pairOf(text, {place - 1, partBefore(text.chunkBefore(place), place).back()}))
            return pair;
    }
    if (place == text.byteCount())
        return std::nullopt;
    return pairOf(text, {place, partAfter(text.chunkAfter(place), place).front()});
}

} // namespace quelm
