// Invariants:
// 1. The pieces are well-formed UTF-8, none empty, none above `TextPiece::capacity` bytes.
// 2. Two adjacent pieces are together larger than `leastPairOfPieces`.
// 3. The tree's own (SummaryTree.h).
// 4. A text that came whole has the same bytes in its pieces, once there are any, and they share its memory.

#include "TextCore/TextRope.h"

#include "TextCore/Check.h"
#include "TextCore/TextPiece.h"
#include "TextCore/UTF16.h"
#include "TextCore/UTF8.h"
#include "TextCore/UTF8Scan.h"

#include <algorithm>
#include <mutex>

namespace quelm {

namespace {

constexpr auto bytesOf = [](const TextSummary& summary) { return summary.bytes; };
constexpr auto utf16Of = [](const TextSummary& summary) { return summary.utf16; };
constexpr auto lineFeedsOf = [](const TextSummary& summary) { return summary.lineFeeds; };
constexpr auto cellsOf = [](const TextSummary& summary) { return summary.cells(); };

bool isBoundary(std::string_view text, std::size_t position) {
    return position == text.size() || (static_cast<unsigned char>(text[position]) & 0xC0) != 0x80;
}

std::size_t characterSize(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// The sums over the longest start of `text` in which the measure is at most `target`.
template <class Measure>
TextSummary summaryUpTo(std::string_view text, Measure measure, std::int64_t target) {
    constexpr std::size_t step = 128;
    TextSummary sum;
    std::size_t position = 0;
    const auto passes = [&](std::size_t end) {
        const TextSummary more = sum + utf8::summarize(text.substr(position, end - position));
        if (measure(more) > target)
            return false;
        sum = more;
        position = end;
        return true;
    };
    // Whole steps first, then the characters of the one that is too much.
    while (position < text.size()) {
        std::size_t end = std::min(position + step, text.size());
        while (!isBoundary(text, end))
            ++end;
        if (!passes(end))
            break;
    }
    while (position < text.size() && passes(position + characterSize(text[position])))
        ;
    return sum;
}

/// The sums over the start of `text` that ends with its line feed number `count`, from 1.
TextSummary summaryThroughLineFeed(std::string_view text, std::int64_t count) {
    std::size_t end = 0;
    for (; count > 0; --count)
        end = text.find('\n', end) + 1;
    return utf8::summarize(text.substr(0, end));
}

} // namespace

struct TextRope::State {
    /// A text that came in one piece of memory; empty for one that was made of others.
    SharedText whole;
    mutable PieceTree pieces;
    mutable std::once_flag counted;

    explicit State(SharedText text) : whole(std::move(text)) {}
    explicit State(PieceTree tree) : pieces(std::move(tree)) {}

    const PieceTree& tree() const {
        if (!whole.empty())
            std::call_once(counted, [this] {
                const auto owner = std::make_shared<const SharedText>(whole);
                pieces = piecesOf(owner, owner->view());
            });
        return pieces;
    }

    static std::shared_ptr<const State> of(PieceTree tree) {
        return tree.isEmpty() ? nullptr : std::make_shared<const State>(std::move(tree));
    }

    TextSummary before(std::int64_t byteOffset) const;
    template <class Measure>
    TextSummary lastPlace(Measure measure, std::int64_t target) const;
    std::pair<PieceTree, PieceTree> split(std::int64_t byteOffset) const;
};

TextSummary TextRope::State::before(std::int64_t byteOffset) const {
    const auto [piece, sum] = tree().find(bytesOf, byteOffset);
    require(byteOffset >= 0 && (piece || byteOffset == sum.bytes), "a place lies within its text");
    if (!piece || byteOffset == sum.bytes)
        return sum;
    const auto inside = static_cast<std::size_t>(byteOffset - sum.bytes);
    require(isBoundary(piece->view(), inside), "a place stands between characters");
    return sum + utf8::summarize(piece->view().substr(0, inside));
}

/// The last place before which the measure is at most `target`, which it is less than over the whole text.
template <class Measure>
TextSummary TextRope::State::lastPlace(Measure measure, std::int64_t target) const {
    const auto [piece, sum] = tree().find(measure, target);
    return piece ? sum + summaryUpTo(piece->view(), measure, target - measure(sum)) : sum;
}

std::pair<PieceTree, PieceTree> TextRope::State::split(std::int64_t byteOffset) const {
    auto [front, back] = tree().split(bytesOf, byteOffset);
    const auto inside = static_cast<std::size_t>(byteOffset - front.summary().bytes);
    if (inside == 0)
        return {std::move(front), std::move(back)};
    require(!back.isEmpty(), "a place lies within its text");
    const TextPiece& piece = back.first();
    require(isBoundary(piece.view(), inside), "a place stands between characters");
    return {joined(front, PieceTree::single(piece.slice(0, inside))),
            joined(PieceTree::single(piece.slice(inside, piece.view().size() - inside)), back.withoutFirst())};
}

TextRope::TextRope(SharedText text) : state_(text.empty() ? nullptr : std::make_shared<const State>(std::move(text))) {}

TextRope TextRope::repairing(std::string_view bytes) {
    if (const auto repaired = utf8::repaired(bytes))
        return repairing(*repaired);
    if (bytes.size() > TextPiece::capacity)
        return TextRope(SharedText(bytes));
    return bytes.empty() ? TextRope() : TextRope(State::of(PieceTree::single(TextPiece::joining(bytes, {}))));
}

TextRope TextRope::repairing(std::u16string_view units) {
    return repairing(utf16::toUTF8(units));
}

std::int64_t TextRope::byteCount() const {
    if (!state_)
        return 0;
    return state_->whole.empty() ? state_->pieces.summary().bytes : static_cast<std::int64_t>(state_->whole.size());
}

TextSummary TextRope::summary() const {
    return state_ ? state_->tree().summary() : TextSummary();
}

void TextRope::prepare() const {
    if (state_)
        state_->tree();
}

SharedText TextRope::contiguous() const {
    if (!state_ || !state_->whole.empty())
        return state_ ? state_->whole.paddedCopy() : SharedText().paddedCopy();
    TextBuilder builder(static_cast<std::size_t>(byteCount()));
    state_->pieces.forEach([&builder](const TextPiece& piece) { builder.append(piece.view()); });
    return builder.finish();
}

bool operator==(const TextRope& left, const TextRope& right) {
    if (left.isSameValue(right))
        return true;
    if (left.byteCount() != right.byteCount())
        return false;
    if (!left.state_->whole.empty() && !right.state_->whole.empty())
        return left.state_->whole.view() == right.state_->whole.view();
    for (std::int64_t position = 0; position < left.byteCount();) {
        const TextRope::Chunk one = left.chunkAfter(position);
        const TextRope::Chunk other = right.chunkAfter(position);
        const std::string_view front = one.bytes.substr(static_cast<std::size_t>(position - one.location));
        const std::string_view back = other.bytes.substr(static_cast<std::size_t>(position - other.location));
        const std::size_t common = std::min(front.size(), back.size());
        if (front.data() != back.data() && front.substr(0, common) != back.substr(0, common))
            return false;
        position += static_cast<std::int64_t>(common);
    }
    return true;
}

TextSummary TextRope::summaryBefore(std::int64_t byteOffset) const {
    if (state_)
        return state_->before(byteOffset);
    require(byteOffset == 0, "a place lies within its text");
    return {};
}

TextSummary TextRope::summaryBeforeUTF16(std::int64_t utf16Offset) const {
    require(utf16Offset >= 0 && utf16Offset <= utf16Count(), "a place lies within its text");
    return state_ ? state_->lastPlace(utf16Of, utf16Offset) : TextSummary();
}

TextSummary TextRope::summaryBeforeLine(std::int64_t line) const {
    require(line >= 0 && line < lineCount(), "a line is one of its text");
    if (line == 0)
        return {};
    const auto [piece, sum] = state_->tree().find(lineFeedsOf, line - 1);
    return sum + summaryThroughLineFeed(piece->view(), line - sum.lineFeeds);
}

TextSummary TextRope::summaryBeforeCell(std::int64_t cells) const {
    require(cells >= 0, "a count of cells is not negative");
    return state_ ? state_->lastPlace(cellsOf, cells) : TextSummary();
}

TextRope::Chunk TextRope::chunkAfter(std::int64_t byteOffset) const {
    require(byteOffset >= 0 && byteOffset <= byteCount(), "a place lies within its text");
    if (!state_)
        return {};
    const auto [piece, sum] = state_->tree().find(bytesOf, byteOffset);
    return piece ? Chunk{piece->view(), sum.bytes} : Chunk{{}, byteOffset};
}

TextRope::Chunk TextRope::chunkBefore(std::int64_t byteOffset) const {
    return byteOffset == 0 ? Chunk() : chunkAfter(byteOffset - 1);
}

std::string TextRope::bytes(ByteRange range) const {
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(range.length));
    forEachChunk(range, [&bytes](std::string_view chunk) { bytes += chunk; });
    return bytes;
}

std::u16string TextRope::utf16(ByteRange range) const {
    std::u16string units;
    units.reserve(static_cast<std::size_t>(range.length));
    forEachChunk(range, [&units](std::string_view chunk) { utf16::append(units, chunk); });
    return units;
}

TextRope TextRope::slice(ByteRange range) const {
    require(range.location >= 0 && range.length >= 0 && range.end() <= byteCount(), "a slice lies within its text");
    if (range.length == byteCount())
        return *this;
    if (range.isEmpty())
        return {};
    const TextRope front(State::of(state_->split(range.end()).first));
    return TextRope(State::of(front.state_->split(range.location).second));
}

TextRope TextRope::replacing(ByteRange range, const TextRope& replacement) const {
    return slice({0, range.location}) + replacement + slice(ByteRange::between(range.end(), byteCount()));
}

TextRope operator+(const TextRope& left, const TextRope& right) {
    if (left.isEmpty() || right.isEmpty())
        return left.isEmpty() ? right : left;
    return TextRope(TextRope::State::of(joined(left.state_->tree(), right.state_->tree())));
}

void TextRope::checkInvariants() const {
    if (!state_)
        return;
    state_->tree().checkInvariants();
    std::size_t previous = leastPairOfPieces;
    std::size_t position = 0;
    state_->tree().forEach([&](const TextPiece& piece) {
        const std::string_view bytes = piece.view();
        require(!bytes.empty() && bytes.size() <= TextPiece::capacity, "a piece is neither empty nor too large");
        require(utf8::isValid(bytes), "a piece is well-formed UTF-8");
        require(piece.summary() == utf8::summarize(bytes), "a piece knows its sums");
        require(previous + bytes.size() > leastPairOfPieces, "adjacent pieces are not both small");
        require(state_->whole.empty() || bytes.data() == state_->whole.data() + position,
                "the pieces of a whole text share its memory");
        previous = bytes.size();
        position += bytes.size();
    });
    require(position == static_cast<std::size_t>(byteCount()), "the pieces make up the text");
}

} // namespace quelm
