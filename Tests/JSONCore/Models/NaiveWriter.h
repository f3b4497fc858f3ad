#pragma once

#include "JSONCore/JSONStyle.h"
#include "Tests/JSONCore/Models/NaiveTree.h"

#include <string>

namespace quelm::test {

/// The JSON text of a value, put together from small strings.
std::string naiveText(const NaiveTree& tree, NodeID from, const JSONStyle& style);

/// The style of a text, decided line by line.
JSONStyle naiveStyle(std::string_view text);

} // namespace quelm::test
