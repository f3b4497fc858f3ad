#pragma once

#include "Quelm/Foundation/Appearance.h"

#include <optional>

namespace quelm {

/// Follows the platform's palette and font, or brings the application's own where the platform has none or another
/// appearance is asked for. An application must exist.
void applyLook(std::optional<Appearance> appearance);

} // namespace quelm
