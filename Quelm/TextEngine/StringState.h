#pragma once

#include <cstdint>
#include <string_view>

namespace quelm {

class TextRope;

/// Where a scan through JSON text is with respect to strings. A string ends with a quote that no backslash escapes, or
/// with its line; so every line begins outside.
class StringState {
public:
    static StringState outside() { return {false, false}; }
    /// Within a string at the byte offset `place`, after an odd number of backslashes or not. Looks at no more than
    /// these and a chunk; more than `longestEscapes` count as an even number.
    static constexpr std::int64_t longestEscapes = std::int64_t{64} << 10; // bytes
    static StringState insideAt(const TextRope& text, std::int64_t place);

    bool isInside() const { return isInside_; }

    /// Goes past a byte and tells whether it belongs to no string, nor delimits one.
    bool advance(char byte) {
        if (byte == '\n') {
            *this = outside();
            return true;
        }
        if (isEscaped_) {
            isEscaped_ = false;
            return false;
        }
        if (byte == '"') {
            isInside_ = !isInside_;
            return false;
        }
        isEscaped_ = isInside_ && byte == '\\';
        return !isInside_;
    }

    /// Goes past all the bytes.
    void advance(std::string_view bytes) {
        for (const char byte : bytes)
            advance(byte);
    }

    /// The state at the byte offset `place`, found by looking back no more than about `limit` bytes: certain where the
    /// line or the text begins within them, else the likelier one.
    static StringState at(const TextRope& text, std::int64_t place, std::int64_t limit);

private:
    StringState(bool isInside, bool isEscaped) : isInside_(isInside), isEscaped_(isEscaped) {}

    bool isInside_;
    /// Whether the next byte is escaped.
    bool isEscaped_;
};

/// What speaks for a stretch in the middle of a line, of unknown state, to begin outside of strings rather than inside
/// one: a backslash must be inside of a string; what opens one comes after a bracket, a comma or a colon, and what
/// closes one before them. Where both would do, a quote says nothing.
struct StringEvidence {
    int outside = 0;
    int inside = 0;
    /// Whether the stretch ends on the other side of a quote than it begins.
    bool isOdd = false;

    /// Of a stretch whose first byte no backslash escapes.
    static StringEvidence in(std::string_view stretch);
};

} // namespace quelm
