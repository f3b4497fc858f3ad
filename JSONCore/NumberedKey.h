#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quelm {

/// The number that the first numbered key of a stem bears: "clave", "clave 2", "clave 3".
inline constexpr std::int64_t firstKeyNumber = 2;

/// "base number".
inline std::string numberedKey(std::string_view base, std::int64_t number) {
    std::string key(base);
    key += ' ';
    key += std::to_string(number);
    return key;
}

/// The number of a key of that stem, as `numberedKey` writes it; absent for any other key.
inline std::optional<std::int64_t> keyNumber(std::string_view key, std::string_view base) {
    if (key.size() < base.size() + 2 || !key.starts_with(base) || key[base.size()] != ' ')
        return std::nullopt;
    const std::string_view digits = key.substr(base.size() + 1);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.front() == '0' ||
        number < firstKeyNumber)
        return std::nullopt;
    return number;
}

} // namespace quelm
