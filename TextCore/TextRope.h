#pragma once

#include "TextCore/SharedText.h"
#include "TextCore/TextSummary.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quelm {

/// A stretch of a text in UTF-8 bytes.
struct ByteRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    std::int64_t end() const { return location + length; }
    bool isEmpty() const { return length == 0; }
    static ByteRange between(std::int64_t start, std::int64_t end) { return {start, end - start}; }
    friend bool operator==(const ByteRange&, const ByteRange&) = default;
};

/// The text of a document: an immutable value of well-formed UTF-8. Copying it is O(1), and edits give a new value in
/// O(log n) that shares what both have in common. Values may be used on any thread.
///
/// Unless said otherwise, positions are byte offsets that stand between characters, from 0 to `byteCount()`; others are
/// programming errors. A line is what ends with a line feed, or with the text; lines are counted from 0 here.
class TextRope {
public:
    TextRope() = default;

    /// Shares the memory. `text` must be well-formed UTF-8 (a programming error otherwise is found wherever it is
    /// decoded, not here). O(1); the first question about places in a long text is O(n), see `prepare`.
    explicit TextRope(SharedText text);

    /// Well-formed UTF-8 is copied as it is; ill-formed sequences are replaced by U+FFFD. O(n).
    static TextRope repairing(std::string_view bytes);

    /// Well-formed UTF-16 is converted as it is; each lone surrogate becomes U+FFFD, one unit like itself. O(n).
    static TextRope repairing(std::u16string_view units);

    // The whole.

    std::int64_t byteCount() const;
    bool isEmpty() const { return byteCount() == 0; }
    /// All sums of the whole text.
    TextSummary summary() const;
    std::int64_t utf16Count() const { return summary().utf16; }
    std::int64_t lineCount() const { return summary().lineFeeds + 1; }

    /// Does now what the first question about places would do: counts what is in a text that came in one piece. O(n)
    /// once for the value and all its copies, meant for another thread than the one that asks; otherwise nothing.
    void prepare() const;

    /// The whole text as one padded piece of memory, shared with this value where it is stored so already; otherwise
    /// O(n).
    SharedText contiguous() const;

    /// Whether both are the same value in memory: O(1), and false says nothing about the texts.
    bool isSameValue(const TextRope& other) const { return state_ == other.state_; }

    /// Equal bytes. O(n), less what both share.
    friend bool operator==(const TextRope& left, const TextRope& right);

    // Places, each in every measure. O(log n).

    TextSummary summaryBefore(std::int64_t byteOffset) const;
    /// The place of a UTF-16 offset from 0 to `utf16Count()`; one within a surrogate pair is taken back to its start.
    TextSummary summaryBeforeUTF16(std::int64_t utf16Offset) const;
    /// The start of a line, from 0 to `lineCount() - 1`.
    TextSummary summaryBeforeLine(std::int64_t line) const;
    /// The last place with no more than `cells` cells before it (0 or more).
    TextSummary summaryBeforeCell(std::int64_t cells) const;
    TextSummary summary(ByteRange range) const { return summaryBefore(range.end()) - summaryBefore(range.location); }

    // Reading.

    struct Chunk {
        /// The bytes around a place that lie together in memory, valid while this rope or a copy of it lives.
        std::string_view bytes;
        /// Where they begin in the text.
        std::int64_t location = 0;
    };
    /// The chunk with the character after the place; at the end of the text, an empty one. Chunks are some kilobytes at
    /// most. O(log n).
    Chunk chunkAfter(std::int64_t byteOffset) const;
    /// The chunk with the character before the place; at the start of the text, an empty one.
    Chunk chunkBefore(std::int64_t byteOffset) const;

    /// Calls `take(std::string_view)` with the bytes of the range, piece by piece in order. O(log n + length).
    template <class Take>
    void forEachChunk(ByteRange range, Take&& take) const {
        for (std::int64_t position = range.location; position < range.end();) {
            const Chunk chunk = chunkAfter(position);
            std::string_view bytes = chunk.bytes.substr(static_cast<std::size_t>(position - chunk.location));
            bytes = bytes.substr(0, static_cast<std::size_t>(range.end() - position));
            take(bytes);
            position += static_cast<std::int64_t>(bytes.size());
        }
    }

    std::string bytes(ByteRange range) const;
    std::u16string utf16(ByteRange range) const;

    // Edits: new values. O(log n) besides the length of a text that is not a rope yet.

    TextRope slice(ByteRange range) const;
    TextRope replacing(ByteRange range, const TextRope& replacement) const;
    friend TextRope operator+(const TextRope& left, const TextRope& right);

    /// Aborts if an invariant of the tree does not hold. O(n).
    void checkInvariants() const;

private:
    struct State;
    explicit TextRope(std::shared_ptr<const State> state) : state_(std::move(state)) {}

    /// Absent for the empty text.
    std::shared_ptr<const State> state_;
};

} // namespace quelm
