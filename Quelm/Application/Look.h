#pragma once

#include "Quelm/Foundation/Appearance.h"

#include <optional>

class QApplication;

namespace quelm {

/// Follows the platform's palette and font, or brings the application's own where the platform has none or
/// another appearance is asked for.
void applyLook(QApplication& application, std::optional<Appearance> appearance);

} // namespace quelm
