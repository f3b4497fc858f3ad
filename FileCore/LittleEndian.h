#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Numbers without sign as the formats of this system's own files have them, whatever the machine.
namespace quelm::littleEndian {

/// Appends all bytes of the number, the lowest first.
template <typename Number>
void put(std::string& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(number >> (8 * i))));
}

/// The number whose bytes begin at the position; all of them must be there.
template <typename Number>
Number at(std::string_view bytes, std::size_t position) {
    Number number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        number |= static_cast<Number>(static_cast<Number>(static_cast<unsigned char>(bytes[position + i])) << (8 * i));
    return number;
}

/// Takes a number off the front; all of its bytes must be there.
template <typename Number>
Number take(std::string_view& bytes) {
    const auto number = at<Number>(bytes, 0);
    bytes.remove_prefix(sizeof(Number));
    return number;
}

} // namespace quelm::littleEndian
