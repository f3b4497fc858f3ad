#pragma once

#include "JSONCore/JSONContent.h"

namespace quelm {

/// Whether two contents are one shared value: O(1), texts and trees by the memory that they share, so that equal
/// contents made apart count as different.
bool isSameContent(const JSONContent& left, const JSONContent& right);

} // namespace quelm
