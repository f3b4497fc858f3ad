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
void PrintTo(NodeKind kind, std::ostream* out);
void PrintTo(NodeID id, std::ostream* out);
void PrintTo(const JSONParseError& error, std::ostream* out);
void PrintTo(const JSONStyle& style, std::ostream* out);
void PrintTo(const TreeEdit& edit, std::ostream* out);
void PrintTo(const TreeChange& change, std::ostream* out);
void PrintTo(const TreeRow::Label& label, std::ostream* out);
void PrintTo(const TreeRow& row, std::ostream* out);

namespace test {

/// "object", "array", "string", "number", "bool" or "null".
std::string_view nameOf(NodeKind kind);

/// One line with every field, such as `  "a"* number 1` (depth as indentation, * for a duplicate key).
std::string describe(const TreeRow& row);

} // namespace test
} // namespace quelm
