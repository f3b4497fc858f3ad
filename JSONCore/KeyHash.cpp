#include "JSONCore/KeyHash.h"

#include "TextCore/CanonicalText.h"

#include <cstring>
#include <string>

namespace quelm {

namespace {

__extension__ using Product = unsigned __int128;

// Odd numbers without a pattern: digits of irrational numbers.
constexpr std::uint64_t first = 0x9E37'79B9'7F4A'7C15;
constexpr std::uint64_t second = 0xC2B2'AE3D'27D4'EB4F;
constexpr std::uint64_t highBits = 0x8080'8080'8080'8080;

std::uint64_t wordAt(const char* bytes, std::size_t count = sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, count);
    return word;
}

/// Both halves of the product carry bits of every bit of the factors.
std::uint64_t mixed(std::uint64_t left, std::uint64_t right) {
    const Product product = Product{left} * right;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

struct BytesHash {
    std::uint64_t hash;
    bool isASCII;
};

BytesHash hashOfBytes(std::string_view bytes) {
    std::uint64_t hash = bytes.size() * second;
    std::uint64_t seen = 0;
    const auto add = [&](std::uint64_t word) {
        seen |= word;
        hash = mixed(hash ^ word ^ first, second);
    };
    const char* at = bytes.data();
    std::size_t left = bytes.size();
    for (; left > sizeof(std::uint64_t); left -= sizeof(std::uint64_t), at += sizeof(std::uint64_t))
        add(wordAt(at));
    // The last word of a key that has a whole one takes bytes twice rather than be put together.
    if (bytes.size() >= sizeof(std::uint64_t))
        add(wordAt(bytes.data() + bytes.size() - sizeof(std::uint64_t)));
    else if (left != 0)
        add(wordAt(at, left));
    return {mixed(hash, first), (seen & highBits) == 0};
}

} // namespace

std::uint64_t keyHash(std::string_view key) {
    const BytesHash bytes = hashOfBytes(key);
    if (bytes.isASCII)
        return bytes.hash;
    std::string storage;
    const std::string_view form = canonical::form(key, storage);
    return form.data() == key.data() ? bytes.hash : hashOfBytes(form).hash;
}

} // namespace quelm
