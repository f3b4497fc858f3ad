#pragma once

namespace quelm {

/// Why and where a string literal is wrong; `message` is null when it is not.
struct LiteralFault {
    const char* message = nullptr;
    const char* place = nullptr;
};

/// The character that the letter after a backslash stands for, or 0 when it is no escape of two characters. None of
/// them stands for NUL.
constexpr char shortEscape(char letter) {
    switch (letter) {
    case '"':
    case '\\':
    case '/':
        return letter;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return 0;
    }
}

/// Decodes an escape sequence that is not of two characters, to `out`, which has room for `utf8::longestForm` bytes,
/// and moves `place` and `out` past it. `place` stands at the backslash; the text ends at `end`, and the literal was
/// opened at `quote`. Nothing is moved when there is a fault.
LiteralFault decodeLongEscape(const char*& place, const char* end, const char* quote, char*& out);

} // namespace quelm
