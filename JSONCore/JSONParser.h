#pragma once

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONTree.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <expected>
#include <stop_token>

/// Text to tree: the grammar of RFC 8259 exactly, any value at the top level, a byte-order mark skipped, duplicate keys
/// kept in order, numbers kept as they are written, nesting limited by memory alone.
namespace quelm::JSONParser {

/// Bytes between two looks at the stop token. A shorter text is parsed without looking.
inline constexpr std::int64_t cancellationInterval = 1'048'576;

/// Longest text that a tree can address, in bytes. Longer ones fail with `JSONParseError::tooLarge()`, and so do those
/// with 2^31 values or more, or with strings that take more than 2 GiB once their escapes are decoded.
inline constexpr std::int64_t maximumTextSize = 0xFFFF'FFFF - 64;

/// The tree of a well-formed UTF-8 text, or its first error. The tree shares the memory of the text. Fails with
/// `JSONParseError::cancelled()` when `stop` was requested, looked at once every `cancellationInterval` bytes at the
/// start of a value. One pass, no recursion; may run on any thread, many at once. Throws std::bad_alloc.
std::expected<JSONTree, JSONParseError> parse(const TextRope& text, std::stop_token stop = {});

} // namespace quelm::JSONParser
