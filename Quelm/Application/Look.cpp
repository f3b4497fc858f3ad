#include "Quelm/Application/Look.h"

#include "Quelm/Application/OwnStyle.h"
#include "Quelm/Foundation/Fonts.h"

#include <QApplication>

namespace quelm {

void applyLook(std::optional<Appearance> appearance) {
    if (platformHasPalette() && appearance.value_or(currentAppearance()) == currentAppearance())
        return;
    const Appearance wanted = appearance.value_or(currentAppearance());
    QApplication::setStyle(new OwnStyle);
    QApplication::setPalette(ownPalette(wanted));
    QApplication::setFont(systemFont(TextStyle::body));
}

} // namespace quelm
