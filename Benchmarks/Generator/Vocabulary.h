#pragma once

#include "Benchmarks/Generator/Random.h"

#include <string>
#include <string_view>

/// Words that invented data is made of. Nothing here needs an escape in JSON.
namespace quelm::bench::vocabulary {

/// A given name or a family name with its form in e-mail addresses.
struct Name {
    std::string_view written;
    std::string_view plain;
};

const Name& givenName(Random& random);
const Name& familyName(Random& random);
std::string_view street(Random& random);
std::string_view city(Random& random);
std::string_view tag(Random& random);
std::string_view topic(Random& random);

/// Appends prose of about `length` bytes, ASCII only, that ends with a whole word.
void appendProse(std::string& text, std::size_t length, Random& random);

/// Scripts beyond ASCII.
enum class Script : unsigned char { spanish, cyrillic, chinese, japanese, emoji };

/// Appends about `length` bytes in one script, separated as that script separates words.
void appendProse(std::string& text, std::size_t length, Script script, Random& random);

} // namespace quelm::bench::vocabulary
