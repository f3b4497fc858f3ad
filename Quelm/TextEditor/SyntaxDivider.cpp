#include "Quelm/TextEditor/SyntaxDivider.h"

#include "Quelm/TextEditor/SyntaxToken.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

// Where a scan for strings is, as a state that is a shift count: what a byte does to all states lies together in one
// word, from which the state takes its successor. So a byte costs a load, a shift and a mask, and nothing is guessed.
constexpr std::uint64_t outside = 0;
constexpr std::uint64_t within = 6;
/// After a backslash in a string.
constexpr std::uint64_t escaping = 12;
/// To be added: a string had a line feed.
constexpr std::uint64_t hadLineFeed = 18;
constexpr std::uint64_t stateMask = 63;

constexpr std::uint64_t successor(std::uint64_t state, char byte) {
    const std::uint64_t had = state >= hadLineFeed ? hadLineFeed : 0;
    const bool isLineFeed = byte == '\n';
    switch (state - had) {
    case outside:
        return (byte == '"' ? within : outside) + had;
    case within:
        if (isLineFeed)
            return outside + hadLineFeed;
        return (byte == '"' ? outside : byte == '\\' ? escaping : within) + had;
    default:
        return within + (isLineFeed ? hadLineFeed : had);
    }
}

constexpr std::array<std::uint64_t, 256> successors = [] {
    std::array<std::uint64_t, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        for (std::uint64_t state = outside; state <= escaping + hadLineFeed; state += within)
            table[byte] |= successor(state, static_cast<char>(byte)) << state;
    return table;
}();

std::uint64_t stateAfter(std::uint64_t state, char byte) {
    return (successors[static_cast<unsigned char>(byte)] >> state) & stateMask;
}

std::uint64_t stateAfter(std::uint64_t state, const char* place, const char* end) {
    for (; place != end; ++place)
        state = stateAfter(state, *place);
    return state;
}

bool isOutside(std::uint64_t state) {
    return state == outside || state == outside + hadLineFeed;
}

bool isWithin(std::uint64_t state) {
    return state == within || state == within + hadLineFeed;
}

/// Bytes that are looked at together.
constexpr std::ptrdiff_t blockLength = 64;

struct Block {
    /// Without a branch, and in bytes, so that compilers take many bytes at a time.
    explicit Block(const char* bytes) {
        std::uint8_t quoteCount = 0;
        std::uint8_t others = 0;
        for (std::ptrdiff_t i = 0; i < blockLength; ++i) {
            const auto byte = static_cast<std::uint8_t>(bytes[i]);
            quoteCount = static_cast<std::uint8_t>(quoteCount + (byte == '"'));
            others = static_cast<std::uint8_t>(others | ((byte == '\\') | (byte == '\n')));
        }
        quotes = quoteCount;
        hasOnlyQuotes = others == 0;
    }

    std::uint8_t quotes = 0;
    /// Nothing else decides what is in strings.
    bool hasOnlyQuotes = false;
};

} // namespace

SyntaxDivider::SyntaxDivider(TextRope text, ByteRange range, Lengths lengths)
    : text_(std::move(text)), start_(range.location), end_(range.end()), lengths_(lengths), place_(start_) {
    require(0 < lengths.least && lengths.least <= lengths.most, "parts have characters");
}

std::optional<SyntaxDivider::Part> SyntaxDivider::next() {
    const std::int64_t start = place_;
    if (state_ >= hadLineFeed)
        state_ -= hadLineFeed;
    const std::int64_t limit = std::min(start + lengths_.most, end_);
    while (place_ < limit) {
        const std::string_view bytes = bytesAfter(place_, limit);
        const char* const end = bytes.data() + bytes.size();
        const auto least = std::clamp<std::int64_t>(start + lengths_.least - place_, 0, std::ssize(bytes));
        skipTo(bytes.data(), bytes.data() + least);
        const char* const found = endOfPart(bytes.data() + least, end);
        place_ += found - bytes.data();
        if (found != end)
            return Part{ByteRange::between(start, place_), state_ < hadLineFeed};
    }
    return std::nullopt;
}

std::string_view SyntaxDivider::bytesAfter(std::int64_t place, std::int64_t limit) const {
    const TextRope::Chunk chunk = text_.chunkAfter(place);
    return chunk.bytes.substr(static_cast<std::size_t>(place - chunk.location),
                              static_cast<std::size_t>(limit - place));
}

void SyntaxDivider::skipTo(const char* place, const char* end) {
    if (place == end)
        return;
    before_ = end[-1];
    std::uint64_t state = state_;
    for (; end - place >= blockLength; place += blockLength) {
        const Block block(place);
        const std::uint64_t had = state >= hadLineFeed ? hadLineFeed : 0;
        if (block.hasOnlyQuotes && state - had != escaping)
            state = block.quotes % 2 == 0 ? state : within + 2 * had - state;
        else
            state = stateAfter(state, place, place + blockLength);
    }
    state_ = stateAfter(state, place, end);
}

const char* SyntaxDivider::endOfPart(const char* place, const char* end) {
    while (place != end) {
        const char* const blockEnd = place + std::min(blockLength, end - place);
        if (isWithin(state_) && blockEnd - place == blockLength && Block(place).quotes == 0) {
            skipTo(place, blockEnd);
            place = blockEnd;
            continue;
        }
        std::uint64_t state = state_;
        char before = before_;
        while (place != blockEnd && !(isOutside(state) && SyntaxTokenReader::isBetweenColors(before, *place))) {
            before = *place++;
            state = stateAfter(state, before);
        }
        state_ = state;
        before_ = before;
        if (place != blockEnd)
            break;
    }
    return place;
}

} // namespace quelm
