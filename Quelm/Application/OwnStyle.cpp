#include "Quelm/Application/OwnStyle.h"

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

namespace quelm {

OwnStyle::OwnStyle() : QProxyStyle(QStringLiteral("fusion")) {}

int OwnStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                        QStyleHintReturn* returnData) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons || hint == SH_EtchDisabledText)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

void OwnStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_PanelMenu)
        return;
    painter->save();
    painter->setPen(semanticColor(ColorRole::separator));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

void OwnStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                           const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const bool isLine =
        element == CE_MenuItem && item && item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty();
    if (!isLine)
        return QProxyStyle::drawControl(element, option, painter, widget);
    const QRect& area = option->rect;
    constexpr int margin = 5;
    painter->fillRect(QRect(area.left() + margin, area.center().y(), area.width() - 2 * margin, 1),
                      semanticColor(ColorRole::separator));
}

QIcon OwnStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const {
    // Every menu bar asks for this one as it is made. The picture of the base class would load all plugins for image
    // formats before the first window is seen.
    if (pixmap == SP_ToolBarHorizontalExtensionButton)
        return symbolIcon(QStringLiteral("chevron.right"), ColorRole::secondaryText);
    return QProxyStyle::standardIcon(pixmap, option, widget);
}

} // namespace quelm
