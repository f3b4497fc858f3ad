#pragma once

#include <QtGlobal>

#include <algorithm>
#include <limits>

namespace quelm {

/// A place of a text as accessibility interfaces, which count in int, give it: what is beyond their range is the
/// greatest one.
constexpr int accessibleOffset(qint64 offset) {
    return static_cast<int>(std::min<qint64>(offset, std::numeric_limits<int>::max()));
}

} // namespace quelm
