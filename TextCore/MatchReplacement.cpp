#include "TextCore/MatchReplacement.h"

#include "TextCore/MatchScanner.h"

#include <new>
#include <string>

namespace quelm {

namespace {

/// A stretch without matches is shared from here on, shorter ones are copied together with what replaces the matches:
/// otherwise a match a word would cut the text into as many pieces.
constexpr std::int64_t shortestShared = 4096;

/// About how many bytes are copied into one piece of memory.
constexpr std::size_t copiedPiece = std::size_t{1} << 20;

/// Puts the new text together from the old one and new bytes.
class Assembly {
public:
    explicit Assembly(const TextRope& text) : text_(text) {}

    void addShared(ByteRange range) {
        if (range.length < shortestShared) {
            copy(range);
            return;
        }
        flush();
        result_ = result_ + text_.slice(range);
    }

    void addCopied(std::string_view bytes) {
        copied_ += bytes;
        if (copied_.size() >= copiedPiece)
            flush();
    }

    TextRope finish() {
        flush();
        result_.prepare();
        return std::move(result_);
    }

private:
    void copy(ByteRange range) {
        for (std::int64_t position = range.location; position < range.end();) {
            // Stretches follow each other closely: most begin in the chunk that the last one ended in.
            if (position >= chunk_.location + static_cast<std::int64_t>(chunk_.bytes.size()))
                chunk_ = text_.chunkAfter(position);
            const std::string_view bytes = chunk_.bytes.substr(static_cast<std::size_t>(position - chunk_.location))
                                               .substr(0, static_cast<std::size_t>(range.end() - position));
            copied_ += bytes;
            position += static_cast<std::int64_t>(bytes.size());
        }
    }

    void flush() {
        if (!copied_.empty())
            result_ = result_ + TextRope(SharedText(std::string_view(copied_)));
        copied_.clear();
    }

    const TextRope& text_;
    TextRope::Chunk chunk_;
    TextRope result_;
    std::string copied_;
};

std::expected<MatchReplacement, MatchReplacementFailure> assemble(const TextRope& text, const SearchPattern& pattern,
                                                                  std::string_view replacement,
                                                                  std::int64_t longestResult,
                                                                  const std::stop_token& stop) {
    MatchReplacement result;
    Assembly assembly(text);
    std::int64_t length = text.byteCount();
    // Case forms differ in length: later matches, longer than what replaces them, may make room for earlier ones.
    const bool canShrink = replacement.size() < pattern.maximumLength();
    MatchScanner scanner(text, pattern, {0, text.byteCount()});
    while (scanner.nextBlock()) {
        if (stop.stop_requested())
            return std::unexpected(MatchReplacementFailure::stopped);
        while (const auto match = scanner.nextInBlock()) {
            if (result.count == 0)
                result.range = *match;
            else
                assembly.addShared(ByteRange::between(result.range.end(), match->location));
            assembly.addCopied(replacement);
            result.range = ByteRange::between(result.range.location, match->end());
            length += static_cast<std::int64_t>(replacement.size()) - match->length;
            ++result.count;
        }
        const std::int64_t mostToGoAway = canShrink ? text.byteCount() - scanner.blockEnd() : 0;
        if (length - mostToGoAway > longestResult)
            return std::unexpected(MatchReplacementFailure::tooLong);
    }
    if (length > longestResult)
        return std::unexpected(MatchReplacementFailure::tooLong);
    result.replacement = assembly.finish();
    return result;
}

} // namespace

std::expected<MatchReplacement, MatchReplacementFailure>
replacingMatches(const TextRope& text, const SearchPattern& pattern, std::string_view replacement,
                 std::int64_t longestResult, const std::stop_token& stop) {
    try {
        return assemble(text, pattern, replacement, longestResult, stop);
    } catch (const std::bad_alloc&) {
        return std::unexpected(MatchReplacementFailure::tooLong);
    }
}

} // namespace quelm
