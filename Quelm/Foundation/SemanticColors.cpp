#include "Quelm/Foundation/SemanticColors.h"

namespace quelm {

namespace {

struct RoleColors {
    ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array<RoleColors, colorRoleCount> palette{{
    {ColorRole::purple, 0xff7d2fa8, 0xffd9a2f5},
    {ColorRole::indigo, 0xff4a47b8, 0xffb5b3fa},
    {ColorRole::green, 0xff17692f, 0xff7fd996},
    {ColorRole::blue, 0xff0a55b8, 0xff85c0ff},
    {ColorRole::orange, 0xff8f4700, 0xffffb868},
    {ColorRole::gray, 0xff57575e, 0xffb4b4bc},
    {ColorRole::red, 0xffb0211a, 0xffff9a92},
    {ColorRole::secondaryText, 0xff57575e, 0xffb4b4bc},
    {ColorRole::text, 0xff1d1d1f, 0xfff0f0f2},
    {ColorRole::tertiaryText, 0xff84848a, 0xff85858c},
    {ColorRole::warning, 0xffd06000, 0xffffa940},
    {ColorRole::disabledText, 0xff9a9aa0, 0xff77777d},
    {ColorRole::windowBackground, 0xfff4f4f6, 0xff29292c},
    {ColorRole::contentBackground, 0xffffffff, 0xff1e1e20},
    {ColorRole::controlBackground, 0xfffafafb, 0xff3a3a3e},
    {ColorRole::tooltipBackground, 0xfffdfdfe, 0xff38383b},
    {ColorRole::separator, 0xffd9d9de, 0xff3f3f44},
    {ColorRole::accent, 0xff0a66d8, 0xff2470d2},
    {ColorRole::accentText, 0xffffffff, 0xffffffff},
    {ColorRole::alternateRow, 0x091d1d1f, 0x08f0f0f2},
    {ColorRole::selection, 0x210a66d8, 0x384c9aff},
    {ColorRole::inactiveSelection, 0x1c1d1d1f, 0x1cf0f0f2},
    {ColorRole::textSelection, 0x400a66d8, 0x524c9aff},
}};

constexpr bool isInRoleOrder() {
    for (std::size_t index = 0; index < palette.size(); ++index)
        if (palette[index].role != static_cast<ColorRole>(index))
            return false;
    return true;
}
static_assert(isInRoleOrder(), "a colour is found by the position of its role");

} // namespace

QColor semanticColor(ColorRole role, Appearance appearance) {
    const RoleColors& colors = palette[static_cast<std::size_t>(role)];
    return QColor::fromRgba(appearance == Appearance::dark ? colors.dark : colors.light);
}

QColor semanticColor(ColorRole role) {
    return semanticColor(role, currentAppearance());
}

} // namespace quelm
