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
    if (element == PE_IndicatorToolBarSeparator)
        return drawToolBarSeparator(*option, *painter);
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
    if (element == CE_ToolBar)
        return drawToolBar(*option, *painter);
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

/// Flat, with a line to what is below.
void OwnStyle::drawToolBar(const QStyleOption& option, QPainter& painter) {
    painter.fillRect(option.rect, option.palette.window());
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                     semanticColor(ColorRole::separator, appearanceOf(option.palette)));
}

void OwnStyle::drawToolBarSeparator(const QStyleOption& option, QPainter& painter) {
    const QRect& area = option.rect;
    const int height = area.height() / 2;
    painter.fillRect(QRect(area.center().x(), area.center().y() - height / 2, 1, height),
                     semanticColor(ColorRole::separator, appearanceOf(option.palette)));
}

QIcon OwnStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const {
    // Every menu bar asks for this one as it is made. The picture of the base class would load all plugins for image
    // formats before the first window is seen.
    if (pixmap == SP_ToolBarHorizontalExtensionButton)
        return symbolIcon(QStringLiteral("chevron.right"), ColorRole::secondaryText);
    return QProxyStyle::standardIcon(pixmap, option, widget);
}

} // namespace quelm
