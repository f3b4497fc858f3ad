#pragma once

#include <string>

namespace quelm {

/// Why and where a string literal is wrong; `message` is null when it is not.
struct LiteralFault {
    const char* message = nullptr;
    const char* place = nullptr;
};

/// Decodes one escape sequence of a string literal onto `text` and moves `place` past it. `place` stands at the
/// backslash; the text ends at `end`, and the literal was opened at `quote`. Nothing is moved when there is a fault.
LiteralFault decodeEscape(const char*& place, const char* end, const char* quote, std::string& text);

} // namespace quelm
