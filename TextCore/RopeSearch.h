#pragma once

#include "TextCore/SearchPattern.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <vector>

/// Searches in a text. Matches begin and end between characters, and lie wholly within the stretch that is searched,
/// whose ends stand between characters. All functions read the text in blocks (see `MatchScanner`) and ask the token at
/// every block; a search that was stopped finds nothing. They may be called from any thread.
namespace quelm {

/// The first match in the stretch.
std::optional<ByteRange> firstMatch(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                                    const std::stop_token& stop = {});

/// The match in the stretch that begins last; it may overlap the one before it.
std::optional<ByteRange> lastMatch(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                                   const std::stop_token& stop = {});

/// All matches in the stretch, none overlapping another, each the leftmost after the one before.
std::vector<ByteRange> allMatches(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                                  const std::stop_token& stop = {});

/// The same without keeping them.
std::int64_t countMatches(const TextRope& text, const SearchPattern& pattern, ByteRange within,
                          const std::stop_token& stop = {});

/// Whether the whole stretch is one match.
bool isMatch(const TextRope& text, const SearchPattern& pattern, ByteRange range);

} // namespace quelm
