#pragma once

#include <unicode/unistr.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

namespace quelm::test {

inline std::size_t randomBelow(std::mt19937& random, std::size_t limit) {
    return random() % limit;
}

/// The UTF-8 form of some scalar values.
inline std::string utf8Of(std::u32string_view scalars) {
    std::string text;
    icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(scalars.data()),
                                  static_cast<std::int32_t>(scalars.size()))
        .toUTF8String(text);
    return text;
}

/// `length` characters drawn from an alphabet.
inline std::string randomText(std::mt19937& random, std::u32string_view alphabet, std::size_t length) {
    std::u32string scalars;
    for (std::size_t index = 0; index < length; ++index)
        scalars.push_back(alphabet[randomBelow(random, alphabet.size())]);
    return utf8Of(scalars);
}

/// The text so many times in a row.
inline std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    result.reserve(text.size() * times);
    for (std::size_t time = 0; time < times; ++time)
        result += text;
    return result;
}

/// The texts one after the other.
inline std::string joined(std::initializer_list<std::string_view> texts) {
    std::string result;
    for (const std::string_view text : texts)
        result += text;
    return result;
}

} // namespace quelm::test
