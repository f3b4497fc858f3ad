#include "Quelm/EditorWindow/ToolBarButton.h"

#include "Quelm/EditorWindow/ControlPainting.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

namespace quelm {

namespace {

constexpr float hoverOpacity = 0.07F;
constexpr float pressedOpacity = 0.14F;

int padding() {
    return scaledPixels(9);
}

int gap() {
    return scaledPixels(6);
}

int symbolSide() {
    return scaledPixels(16);
}

int chevronSide() {
    return scaledPixels(10);
}

} // namespace

ToolBarButton::ToolBarButton(const QString& title, const QString& symbol, const QString& toolTip, QWidget* parent)
    : QToolButton(parent), symbol_(symbol) {
    setText(title);
    setAccessibleName(title);
    setToolTip(toolTip);
    setFont(systemFont(TextStyle::body));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void ToolBarButton::setDropDownMenu(QMenu* menu) {
    menu->setParent(this, menu->windowFlags());
    // The click that closes the menu would open it again.
    menu->setAttribute(Qt::WA_NoMouseReplay);
    setPopupMode(InstantPopup);
    setMenu(menu);
    connect(menu, &QMenu::aboutToHide, this, [this] { update(); });
}

QSize ToolBarButton::sizeHint() const {
    return {2 * padding() + labelWidth(), scaledPixels(28)};
}

int ToolBarButton::labelWidth() const {
    const int chevron = menu() ? gap() + chevronSide() : 0;
    return symbolSide() + gap() + fontMetrics().horizontalAdvance(text()) + chevron;
}

void ToolBarButton::openMenu() {
    menu()->popup(mapToGlobal(QPoint(0, height())));
    update();
}

void ToolBarButton::mousePressEvent(QMouseEvent* event) {
    if (menu() && event->button() == Qt::LeftButton)
        openMenu();
    else
        QToolButton::mousePressEvent(event);
}

void ToolBarButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return menu() ? openMenu() : click();
    case Qt::Key_Space:
    case Qt::Key_Down:
        if (menu())
            return openMenu();
        break;
    default:
        break;
    }
    QToolButton::keyPressEvent(event);
}

void ToolBarButton::paintEvent(QPaintEvent*) {
    const Appearance appearance = appearanceOf(palette());
    const auto color = [&](ColorRole role) {
        return semanticColor(isEnabled() ? role : ColorRole::disabledText, appearance);
    };
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = scaledPixels(6);
    const bool isPressed = isDown() || (menu() && menu()->isVisible());
    if (isEnabled() && (isPressed || underMouse()))
        paintTint(painter, QRectF(rect()), radius, appearance, isPressed ? pressedOpacity : hoverOpacity);
    if (hasFocus())
        paintFocusRing(painter, QRectF(rect()), radius, appearance);

    int x = (width() - labelWidth()) / 2;
    const auto symbol = [&](const QString& name, int side) {
        paintSymbol(painter, name, QRectF(x, (height() - side) / 2, side, side), color(ColorRole::secondaryText));
        x += side + gap();
    };
    symbol(symbol_, symbolSide());
    painter.setPen(color(ColorRole::text));
    painter.drawText(QRect(x, 0, width() - x, height()), Qt::AlignVCenter | Qt::AlignLeft, text());
    x += fontMetrics().horizontalAdvance(text()) + gap();
    if (menu())
        symbol(QStringLiteral("chevron.down"), chevronSide());
}

} // namespace quelm
