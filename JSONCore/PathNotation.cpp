#include "JSONCore/PathNotation.h"

#include <algorithm>
#include <array>

namespace quelm {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isIdentifierCharacter(char c) {
    const char lowercase = static_cast<char>(c | 0x20);
    return (lowercase >= 'a' && lowercase <= 'z') || isDigit(c) || c == '_' || c == '$';
}

} // namespace

bool PathNotation::isIdentifierLike(std::string_view key) {
    // A block at a time, without a branch in it, since a key may have megabytes.
    constexpr std::size_t blockSize = 64;
    if (key.empty() || isDigit(key.front()))
        return false;
    for (; key.size() >= blockSize; key.remove_prefix(blockSize)) {
        std::array<unsigned char, blockSize> isFit{};
        for (std::size_t index = 0; index < blockSize; ++index)
            isFit[index] = static_cast<unsigned char>(isIdentifierCharacter(key[index]));
        if (std::ranges::find(isFit, 0) != isFit.end())
            return false;
    }
    return std::ranges::all_of(key, isIdentifierCharacter);
}

std::string PathNotation::escaped(std::string_view key) {
    std::string text;
    for (const char c : key) {
        if (c == '\\' || c == '"')
            text += '\\';
        text += c;
    }
    return text;
}

std::string PathNotation::member(std::string_view key) {
    if (isIdentifierLike(key))
        return "." + std::string(key);
    return "[\"" + escaped(key) + "\"]";
}

} // namespace quelm
