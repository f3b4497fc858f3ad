#pragma once

#include "JSONCore/NodeKind.h"

#include <string>
#include <string_view>

/// Pure functions about the text of a scalar value: a decoded string, a number's literal, "true" or "false"; empty for
/// null and containers.
namespace quelm::JSONScalar {

/// Whether a typed text may stand as a value of the kind. Nothing is trimmed: a number is one literal of RFC 8259 and
/// nothing else, a Boolean exactly "true" or "false", null the empty text, a string any text; a container never has
/// one.
bool isValid(std::string_view text, NodeKind kind);

/// The text of a new value: "0" for a number, "false" for a Boolean, else empty.
std::string_view defaultScalar(NodeKind kind);

/// The text that a value of kind `from` takes with it when it becomes a `to`. Always gives a valid text of a scalar
/// `to`. Numbers become Booleans by their value as `strtod` reads it in the C locale, hexadecimal and infinities
/// included.
std::string convert(std::string_view text, NodeKind from, NodeKind to);

/// The end of the number literal that starts at `text[position]`, or `npos` when what is there breaks the grammar. What
/// follows the literal is not looked at.
std::size_t scanNumber(std::string_view text, std::size_t position = 0);

} // namespace quelm::JSONScalar
