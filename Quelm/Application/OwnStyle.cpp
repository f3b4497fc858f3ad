#include "Quelm/Application/OwnStyle.h"

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"

#include <QGroupBox>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

/// Of the edges of frames and of controls in the dark, in the colour of texts.
constexpr float edgeOpacity = 0.16F;
constexpr float hoverOpacity = 0.06F;
constexpr float pressedOpacity = 0.12F;

QColor translucent(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

/// A pen a pixel wide and the area on whose edge it meets whole pixels of the device.
struct Edge {
    Edge(const QRect& area, const QPainter& painter) {
        const QTransform& toDevice = painter.deviceTransform();
        const double scale = toDevice.m11();
        const double line = std::max(1.0, std::floor(scale));
        const QRect pixels = toDevice.mapRect(QRectF(area)).toRect();
        const double inset = line / 2;
        outline = toDevice.inverted().mapRect(QRectF(pixels).adjusted(inset, inset, -inset, -inset));
        width = line / scale;
    }

    QRectF outline;
    double width = 1;
};

} // namespace

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
    if (element == PE_IndicatorCheckBox)
        return drawCheckBox(*option, *painter);
    if (element == PE_FrameGroupBox)
        return drawGroupFrame(*option, *painter, widget);
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

void OwnStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                  const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox)
        drawEdgeInTheDark(*option, *painter);
}

void OwnStyle::drawCheckBox(const QStyleOption& option, QPainter& painter) {
    const auto color = [&](ColorRole role) { return semanticColor(role, appearanceOf(option.palette)); };
    const bool isEnabled = option.state & State_Enabled;
    const bool isOn = option.state & (State_On | State_NoChange);
    const bool isHovered = option.state & State_MouseOver;
    // Of a menu, with the accent around it.
    const bool isHighlighted = isEnabled && (option.state & State_Selected);
    constexpr double radius = 3;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const Edge edge(option.rect, painter);
    const ColorRole edgeRole = !isEnabled      ? ColorRole::disabledText
                               : isHighlighted ? ColorRole::accentText
                               : isOn          ? ColorRole::accent
                               : isHovered     ? ColorRole::secondaryText
                                               : ColorRole::tertiaryText;
    // The accent alone is a shade too near to the window in the dark.
    constexpr int edgeBrightness = 110;
    const QColor edgeColor = color(edgeRole);
    painter.setPen(QPen(edgeRole == ColorRole::accent ? edgeColor.lighter(edgeBrightness) : edgeColor, edge.width));
    const ColorRole ground = isOn && isEnabled ? ColorRole::accent
                             : isEnabled       ? ColorRole::contentBackground
                                               : ColorRole::windowBackground;
    painter.setBrush(color(ground));
    painter.drawRoundedRect(edge.outline, radius, radius);
    if (isEnabled && (option.state & State_Sunken || isHovered)) {
        painter.setPen(Qt::NoPen);
        const float opacity = option.state & State_Sunken ? pressedOpacity : hoverOpacity;
        painter.setBrush(translucent(color(isOn ? ColorRole::accentText : ColorRole::text), opacity));
        painter.drawRoundedRect(edge.outline, radius, radius);
    }
    if (isOn) {
        const QRectF& box = edge.outline;
        const auto at = [&](double x, double y) {
            return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
        };
        painter.setPen(QPen(color(isEnabled ? ColorRole::accentText : ColorRole::disabledText), box.width() / 8,
                            Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        if (option.state & State_On)
            painter.drawPolyline(QPolygonF({at(0.22, 0.53), at(0.42, 0.73), at(0.78, 0.29)}));
        else
            painter.drawLine(at(0.25, 0.5), at(0.75, 0.5));
    }
    painter.restore();
}

/// Below the title, for which the base class leaves this room.
void OwnStyle::drawGroupFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget) const {
    const QColor text = semanticColor(ColorRole::text, appearanceOf(option.palette));
    constexpr double radius = 5;
    constexpr float groundOpacity = 0.02F;
    constexpr int gap = 3;
    const auto* group = qobject_cast<const QGroupBox*>(widget);
    const bool hasTitle = group && (group->isCheckable() || !group->title().isEmpty());
    const int titleHeight =
        std::max(pixelMetric(PM_ExclusiveIndicatorHeight, &option, widget), option.fontMetrics.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const Edge edge(option.rect.adjusted(0, gap + (hasTitle ? titleHeight : 0), 0, 0), painter);
    painter.setPen(QPen(translucent(text, edgeOpacity), edge.width));
    painter.setBrush(translucent(text, groundOpacity));
    painter.drawRoundedRect(edge.outline, radius, radius);
    painter.restore();
}

/// In place of an edge that is darker than what is around it.
void OwnStyle::drawEdgeInTheDark(const QStyleOption& option, QPainter& painter) {
    if (appearanceOf(option.palette) == Appearance::light || option.state & State_HasFocus)
        return;
    constexpr double radius = 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const Edge edge(option.rect, painter);
    painter.setPen(QPen(translucent(semanticColor(ColorRole::text, Appearance::dark), edgeOpacity), edge.width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(edge.outline, radius, radius);
    painter.restore();
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
