#include "Quelm/Application/Look.h"

#include "Quelm/Foundation/Fonts.h"

#include <QApplication>

namespace quelm {

void applyLook(QApplication& application, std::optional<Appearance> appearance) {
    if (platformHasPalette() && appearance.value_or(currentAppearance()) == currentAppearance())
        return;
    application.setPalette(ownPalette(appearance.value_or(currentAppearance())));
    application.setFont(systemFont(TextStyle::body));
}

} // namespace quelm
