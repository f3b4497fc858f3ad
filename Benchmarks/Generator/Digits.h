#pragma once

#include <charconv>
#include <concepts>
#include <string>

namespace quelm::bench {

/// Appends an integer in decimal, without any locale.
template <std::integral Integer>
void appendDecimal(std::string& text, Integer number) {
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, end.ptr);
}

/// The same with leading zeros up to `width` digits; `number` must not be negative.
template <std::integral Integer>
void appendPadded(std::string& text, Integer number, std::size_t width) {
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    const auto count = static_cast<std::size_t>(end.ptr - digits);
    if (count < width)
        text.append(width - count, '0');
    text.append(digits, end.ptr);
}

} // namespace quelm::bench
