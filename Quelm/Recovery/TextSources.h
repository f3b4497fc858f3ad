#pragma once

#include "Quelm/Recovery/JournalRecord.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <vector>

namespace quelm {

/// Describes texts by what is known when a record is read, so that a text which was only moved about takes a few bytes.
/// Two stretches count as the same when they are the same memory; nothing is compared. For one thread at a time.
class TextSources {
public:
    /// Copies shorter than this would take up no less than the bytes themselves.
    static constexpr std::int64_t shortestCopy = 64;

    TextSources() = default;
    explicit TextSources(TextRope file) : file_(std::move(file)) {}

    /// The text of the base's file; empty when there is none or it is not in memory.
    const TextRope& file() const { return file_; }

    /// `text`, which took the place of `removed`. O(log n) a chunk of both, and once for the file of those of its own.
    std::vector<journal::TextSource> describe(const TextRope& text, const TextRope& removed);

    /// Where a stretch of memory is in a text.
    struct Stretch {
        const char* start = nullptr;
        const char* end = nullptr;
        std::int64_t location = 0;
    };

private:
    TextRope file_;
    /// Of the file, once they were needed.
    std::vector<Stretch> fileStretches_;
};

} // namespace quelm
