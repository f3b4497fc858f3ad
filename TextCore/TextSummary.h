#pragma once

#include <cstdint>

namespace quelm {

/// What can be counted in a stretch of text, each sum additive: that of two adjacent stretches is the sum of theirs.
/// The summary of the text before a place says where that place is in every measure at once.
struct TextSummary {
    /// UTF-8 bytes.
    std::int64_t bytes = 0;
    /// UTF-16 code units.
    std::int64_t utf16 = 0;
    /// Line feeds, the only character that ends a line.
    std::int64_t lineFeeds = 0;
    std::int64_t carriageReturns = 0;
    /// Characters of three UTF-8 bytes, most of which are twice as wide as a Latin letter.
    std::int64_t threeByteForms = 0;

    /// All characters are below U+0080.
    bool isASCII() const { return bytes == utf16; }

    /// The width in cells of a fixed-pitch grid, as far as UTF-8 lengths tell it: one for characters of one or two
    /// bytes, two for the others.
    std::int64_t cells() const { return utf16 + threeByteForms; }

    TextSummary& operator+=(const TextSummary& other) {
        bytes += other.bytes;
        utf16 += other.utf16;
        lineFeeds += other.lineFeeds;
        carriageReturns += other.carriageReturns;
        threeByteForms += other.threeByteForms;
        return *this;
    }
    TextSummary& operator-=(const TextSummary& other) {
        bytes -= other.bytes;
        utf16 -= other.utf16;
        lineFeeds -= other.lineFeeds;
        carriageReturns -= other.carriageReturns;
        threeByteForms -= other.threeByteForms;
        return *this;
    }
    friend TextSummary operator+(TextSummary left, const TextSummary& right) { return left += right; }
    friend TextSummary operator-(TextSummary left, const TextSummary& right) { return left -= right; }
    friend bool operator==(const TextSummary&, const TextSummary&) = default;
};

} // namespace quelm
