#include "JSONCore/JSONParseError.h"

#include "TextCore/Check.h"
#include "TextCore/Graphemes.h"
#include "TextCore/UTF8.h"

#include <utility>

namespace quelm {

std::string JSONParseError::errorDescription() const {
    return "Línea " + std::to_string(line) + ", columna " + std::to_string(column) + ": " + message;
}

JSONParseError JSONParseError::cancelled() {
    return {"Validación cancelada", 0, 0, 0};
}

JSONParseError JSONParseError::notUTF8() {
    return {"El archivo no está codificado en UTF-8", 0, 1, 1};
}

JSONParseError JSONParseError::tooLarge() {
    return {"El archivo es demasiado grande", 0, 1, 1};
}

JSONParseError JSONParseError::at(std::int64_t offset, std::string message, std::string_view text) {
    require(offset >= 0 && offset <= static_cast<std::int64_t>(text.size()), "an error is within its text");
    const std::string_view before = text.substr(0, static_cast<std::size_t>(offset));
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0: the first line
    const auto lineFeeds = static_cast<std::int64_t>(utf8::countLineFeeds(before.substr(0, lineStart)));
    const std::string_view line = before.substr(lineStart);
    // Errors are found at the start of a character, except where the text is cut inside one: such a rest counts as
    // U+FFFD.
    const std::int64_t column = utf8::isValid(line) ? graphemes::count(line) : graphemes::count(*utf8::repaired(line));
    return {std::move(message), offset, 1 + lineFeeds, 1 + column};
}

} // namespace quelm
