#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quelm {

/// Why and where a text is not JSON. The messages are Spanish; an application that speaks other languages translates
/// `message` and writes the place itself.
struct JSONParseError {
    std::string message;
    /// Bytes of UTF-8 before the fault, a byte-order mark included.
    std::int64_t offset = 0;
    /// From 1. Lines end at a line feed only.
    std::int64_t line = 0;
    /// From 1, in extended grapheme clusters; a byte-order mark counts as one.
    std::int64_t column = 0;

    /// "Línea 3, columna 14: Se esperaba ',' o '}'"
    std::string errorDescription() const;

    /// The error of a parse that was cancelled: "Validación cancelada", all numbers zero. Recognised by equality, and
    /// never shown.
    static JSONParseError cancelled();

    /// The error of bytes that are not UTF-8: "El archivo no está codificado en UTF-8", at the first line and column.
    static JSONParseError notUTF8();

    /// The error of a text longer, or with more values, than a tree can address: "El archivo es demasiado grande", at
    /// the first line and column.
    static JSONParseError tooLarge();

    /// An error at a byte offset of `text` (0 to its size), whose line and column are counted here: O(offset).
    static JSONParseError at(std::int64_t offset, std::string message, std::string_view text);

    friend bool operator==(const JSONParseError&, const JSONParseError&) = default;
};

} // namespace quelm
