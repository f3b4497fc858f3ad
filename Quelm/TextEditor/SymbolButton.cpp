#include "Quelm/TextEditor/SymbolButton.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"

#include <QPainter>

namespace quelm {

namespace {

constexpr float hoverOpacity = 0.08F;
constexpr float pressedOpacity = 0.16F;
constexpr float checkedOpacity = 0.16F;

QColor translucent(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

} // namespace

SymbolButton::SymbolButton(const QString& symbol, const QString& name, const QString& keys, QWidget* parent)
    : QToolButton(parent), symbol_(symbol) {
    setName(name, keys);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(sizeHint());
}

void SymbolButton::setSymbol(const QString& symbol) {
    symbol_ = symbol;
    update();
}

void SymbolButton::setName(const QString& name, const QString& keys) {
    setAccessibleName(name);
    setToolTip(keys.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, keys));
}

QSize SymbolButton::sizeHint() const {
    return {scaledPixels(24), scaledPixels(24)};
}

void SymbolButton::paintEvent(QPaintEvent*) {
    const Appearance appearance = appearanceOf(palette());
    const auto color = [&](ColorRole role) { return semanticColor(role, appearance); };
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = scaledPixels(5);
    const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);

    painter.setPen(Qt::NoPen);
    if (isChecked()) {
        painter.setBrush(translucent(color(ColorRole::accent), checkedOpacity));
        painter.drawRoundedRect(area, radius, radius);
    }
    if (isEnabled() && (isDown() || underMouse())) {
        painter.setBrush(translucent(color(ColorRole::text), isDown() ? pressedOpacity : hoverOpacity));
        painter.drawRoundedRect(area, radius, radius);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color(ColorRole::accent), 1));
        painter.drawRoundedRect(area, radius, radius);
    }

    const int side = scaledPixels(16);
    const QRectF place((width() - side) / 2, (height() - side) / 2, side, side);
    const ColorRole role = !isEnabled()  ? ColorRole::disabledText
                           : isChecked() ? ColorRole::blue
                                         : ColorRole::secondaryText;
    paintSymbol(painter, symbol_, place, color(role));
}

} // namespace quelm
