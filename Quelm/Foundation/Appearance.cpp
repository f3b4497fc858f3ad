#include "Quelm/Foundation/Appearance.h"

#include "Quelm/Foundation/SemanticColors.h"

#include <QApplication>
#include <QStyle>

namespace quelm {

Appearance appearanceOf(const QPalette& palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor background = palette.color(QPalette::Active, QPalette::Window);
    return text.lightnessF() > background.lightnessF() ? Appearance::dark : Appearance::light;
}

Appearance currentAppearance() {
    return appearanceOf(QGuiApplication::palette());
}

QPalette ownPalette(Appearance appearance) {
    const auto role = [appearance](ColorRole name) { return semanticColor(name, appearance); };

    QPalette palette;
    palette.setColor(QPalette::Window, role(ColorRole::windowBackground));
    palette.setColor(QPalette::WindowText, role(ColorRole::text));
    palette.setColor(QPalette::Base, role(ColorRole::contentBackground));
    palette.setColor(QPalette::AlternateBase, role(ColorRole::windowBackground));
    palette.setColor(QPalette::Text, role(ColorRole::text));
    palette.setColor(QPalette::Button, role(ColorRole::controlBackground));
    palette.setColor(QPalette::ButtonText, role(ColorRole::text));
    palette.setColor(QPalette::BrightText, role(ColorRole::red));
    palette.setColor(QPalette::ToolTipBase, role(ColorRole::tooltipBackground));
    palette.setColor(QPalette::ToolTipText, role(ColorRole::text));
    palette.setColor(QPalette::Highlight, role(ColorRole::accent));
    palette.setColor(QPalette::HighlightedText, role(ColorRole::accentText));
    palette.setColor(QPalette::Link, role(ColorRole::blue));
    palette.setColor(QPalette::LinkVisited, role(ColorRole::purple));
    palette.setColor(QPalette::PlaceholderText, role(ColorRole::secondaryText));

    // What a style shades bevels, grooves and frames with.
    const QColor control = role(ColorRole::controlBackground);
    palette.setColor(QPalette::Light, control.lighter(115));
    palette.setColor(QPalette::Midlight, control.lighter(107));
    palette.setColor(QPalette::Mid, control.darker(125));
    palette.setColor(QPalette::Dark, control.darker(145));
    palette.setColor(QPalette::Shadow, QColor(0, 0, 0, 160));

    for (const auto text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, text, role(ColorRole::disabledText));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, role(ColorRole::separator));
    return palette;
}

bool platformHasPalette() {
    // Without one, the application's palette is what the style itself proposes.
    return QGuiApplication::palette() != QApplication::style()->standardPalette();
}

} // namespace quelm
