#include "Quelm/Application/OwnStyle.h"

namespace quelm {

OwnStyle::OwnStyle() : QProxyStyle(QStringLiteral("fusion")) {}

int OwnStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                        QStyleHintReturn* returnData) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

} // namespace quelm
