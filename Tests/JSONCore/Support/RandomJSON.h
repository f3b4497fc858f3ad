#pragma once

#include "Tests/JSONCore/Support/Random.h"

#include <cstdint>
#include <string>

namespace quelm::test {

/// What a random document is like.
struct JSONShape {
    /// Values in it, about.
    std::int64_t values = 50;
    /// Most members or elements of one container.
    std::int64_t largestContainer = 12;
    /// Whether white space, escapes and odd numbers are strewn in.
    bool isUntidy = true;
};

/// A valid JSON text. Its keys come from a small stock: duplicates are common, and so are pairs that are
/// canonically equivalent but not the same bytes.
std::string randomJSON(Random& random, const JSONShape& shape = {});

/// A key of that stock, decoded.
std::string randomKey(Random& random);

/// A text for a string value, decoded: empty to some hundred characters, any Unicode.
std::string randomText(Random& random);

/// A number literal.
std::string randomNumber(Random& random);

/// The text with some characters taken out, put in, replaced or moved; or cut off. Valid JSON or not, always
/// UTF-8.
std::string mutated(const std::string& text, Random& random);

} // namespace quelm::test
