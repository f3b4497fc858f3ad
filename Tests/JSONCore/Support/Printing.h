#pragma once

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONStyle.h"
#include "JSONCore/NodeID.h"
#include "JSONCore/NodeKind.h"
#include "JSONCore/TreeEdit.h"
#include "JSONCore/TreeRow.h"

#include <iosfwd>
#include <string>
#include <string_view>

namespace quelm {

// How GoogleTest shows the library's values when a comparison fails.
std::ostream& operator<<(std::ostream& out, NodeKind kind);
std::ostream& operator<<(std::ostream& out, NodeID id);
std::ostream& operator<<(std::ostream& out, const JSONParseError& error);
std::ostream& operator<<(std::ostream& out, const JSONStyle& style);
std::ostream& operator<<(std::ostream& out, const TreeEdit& edit);
std::ostream& operator<<(std::ostream& out, const TreeChange& change);
std::ostream& operator<<(std::ostream& out, const TreeRow::Label& label);
std::ostream& operator<<(std::ostream& out, const TreeRow& row);

namespace test {

/// "object", "array", "string", "number", "bool" or "null".
std::string_view nameOf(NodeKind kind);

/// One line with every field, such as `  "a"* number 1` (depth as indentation, * for a duplicate key).
std::string describe(const TreeRow& row);

} // namespace test
} // namespace quelm
