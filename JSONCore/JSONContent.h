#pragma once

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONStyle.h"
#include "JSONCore/JSONTree.h"
#include "TextCore/TextRope.h"

#include <expected>
#include <optional>
#include <stop_token>

namespace quelm {

/// What a document holds: a text, the tree parsed from it or the error that stopped the parse, and the style in force.
/// A plain value, copied in O(1); text and tree share one memory. May be made on one thread and used on another.
struct JSONContent {
    /// The JSON as the user has it; absent when the tree is the truth.
    std::optional<TextRope> text;
    std::optional<JSONTree> tree;
    std::optional<JSONParseError> parseError;
    JSONStyle style = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false);

    /// The content of a new document: an empty object and no text.
    static JSONContent empty();

    /// Keeps the text, detects its style and parses it: exactly one of `tree` and `parseError` is present. `stop` as in
    /// `JSONParser::parse`.
    static JSONContent fromText(TextRope text, std::stop_token stop = {});

    /// The same for the bytes of a file, which must be UTF-8: `JSONParseError::notUTF8()` otherwise. A byte-order mark
    /// stays in the text. Padded bytes are shared, not copied.
    static std::expected<JSONContent, JSONParseError> fromData(SharedText bytes, std::stop_token stop = {});
};

} // namespace quelm
