#include "Quelm/Application/OwnStyle.h"

#include "Quelm/Foundation/Symbols.h"

namespace quelm {

OwnStyle::OwnStyle() : QProxyStyle(QStringLiteral("fusion")) {}

int OwnStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                        QStyleHintReturn* returnData) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QIcon OwnStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const {
    // Every menu bar asks for this one as it is made. The picture of the base class would load all plugins for image
    // formats before the first window is seen.
    if (pixmap == SP_ToolBarHorizontalExtensionButton)
        return symbolIcon(QStringLiteral("chevron.right"), ColorRole::secondaryText);
    return QProxyStyle::standardIcon(pixmap, option, widget);
}

} // namespace quelm
