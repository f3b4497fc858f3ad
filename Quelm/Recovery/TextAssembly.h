#pragma once

#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/ReplayError.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <expected>
#include <span>

namespace quelm {

/// Whether a place lies within the text and between two characters. O(log n).
bool isBetweenCharacters(const TextRope& text, std::int64_t byteOffset);

/// Whether a range begins and ends at such places. O(log n).
bool isRangeOfCharacters(const TextRope& text, std::int64_t location, std::int64_t length);

/// The text that sources make up, whatever they say; copies share the memory of what they are of. `removed` and `file`
/// are the texts that they may copy, and no result is above `longest` bytes. Throws std::bad_alloc. O(log n) a source,
/// besides its literal.
std::expected<TextRope, ReplayError> assembleText(std::span<const journal::TextSource> sources, const TextRope& removed,
                                                  const TextRope& file, std::int64_t longest);

} // namespace quelm
