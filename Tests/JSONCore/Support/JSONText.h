#pragma once

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONStyle.h"
#include "JSONCore/JSONTree.h"
#include "TextCore/TextRope.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// Shorthands for going from texts to trees and back in tests.
namespace quelm::test {

/// A rope with a copy of the text.
TextRope rope(std::string_view text);

/// The tree of a text that is valid JSON. Anything else ends the test program.
JSONTree parsed(std::string_view text);

/// The error of a text that is not valid JSON. A text that parses fails the test.
JSONParseError parseError(std::string_view text);

/// The whole document in a style, compact by default.
std::string written(const JSONTree& tree, const JSONStyle& style = JSONStyle::compact());

/// The value of one node.
std::string written(const JSONTree& tree, NodeID from, const JSONStyle& style = JSONStyle::compact());

/// The node reached from the top-level value by child positions.
NodeID nodeAt(const JSONTree& tree, std::initializer_list<std::int64_t> positions);

/// The text repeated `count` times.
std::string repeated(std::string_view text, std::size_t count);

} // namespace quelm::test
