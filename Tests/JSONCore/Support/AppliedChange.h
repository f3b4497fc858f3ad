#pragma once

#include "JSONCore/JSONTree.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

namespace quelm::test {

/// Applies a change, which must be there, and writes the document. Fails the test unless the change's focus is then the
/// node at these positions, and undoing and redoing the change restore what was before and after.
std::string applied(JSONTree& tree, const std::optional<TreeChange>& change, std::initializer_list<std::int64_t> focus);

} // namespace quelm::test
