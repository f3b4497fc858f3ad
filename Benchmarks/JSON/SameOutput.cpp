#include "Benchmarks/JSON/SameOutput.h"

#include <algorithm>

namespace quelm::bench {

namespace {

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'F' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whether `position` is one of the four digits after a "\u".
bool isEscapeDigit(std::string_view text, std::size_t position) {
    for (std::size_t before = 2; before <= 5 && before <= position; ++before)
        if (text.substr(position - before, 2) == "\\u")
            return true;
    return false;
}

std::string_view withoutLastLineFeed(std::string_view text) {
    return text.ends_with('\n') ? text.substr(0, text.size() - 1) : text;
}

} // namespace

std::optional<std::size_t> firstDifference(std::string_view left, std::string_view right) {
    left = withoutLastLineFeed(left);
    right = withoutLastLineFeed(right);
    std::size_t position = 0;
    while (true) {
        const auto [atLeft, atRight] =
            std::mismatch(left.begin() + static_cast<std::ptrdiff_t>(position), left.end(),
                          right.begin() + static_cast<std::ptrdiff_t>(position), right.end());
        position = static_cast<std::size_t>(atLeft - left.begin());
        if (atLeft == left.end() && atRight == right.end())
            return std::nullopt;
        if (atLeft == left.end() || atRight == right.end() || lowerCase(*atLeft) != lowerCase(*atRight) ||
            !isEscapeDigit(left, position))
            return position;
        ++position;
    }
}

} // namespace quelm::bench
