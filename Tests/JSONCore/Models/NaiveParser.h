#pragma once

#include "JSONCore/JSONParseError.h"
#include "Tests/JSONCore/Models/NaiveTree.h"

#include <expected>
#include <string_view>

namespace quelm::test {

/// The grammar and the errors of JSON texts, a byte at a time, with lines and columns counted from the start.
std::expected<NaiveTree, JSONParseError> naiveParse(std::string_view text);

} // namespace quelm::test
