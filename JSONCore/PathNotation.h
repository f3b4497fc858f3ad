#pragma once

#include <string>
#include <string_view>

/// How the path of a value is written ("$.pedidos[0][\"a b\"]").
namespace quelm::PathNotation {

/// Whether a key is written as ".key": it begins with an ASCII letter, "_" or "$" and goes on with those and digits.
/// O(n).
bool isIdentifierLike(std::string_view key);

/// A key, or the end of one, with a backslash before every quote and backslash.
std::string escaped(std::string_view key);

/// The component of an object's member: ".key" or "[\"key\"]".
std::string member(std::string_view key);

} // namespace quelm::PathNotation
