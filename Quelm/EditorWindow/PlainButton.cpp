#include "Quelm/EditorWindow/PlainButton.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QKeyEvent>
#include <QPainter>

namespace quelm {

namespace {

int padding() {
    return scaledPixels(4);
}

} // namespace

PlainButton::PlainButton(const QString& title, QWidget* parent) : QPushButton(title, parent) {
    setFont(systemFont(TextStyle::caption));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

QSize PlainButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * padding(), fontMetrics().height() + scaledPixels(4)};
}

void PlainButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QPushButton::keyPressEvent(event);
}

void PlainButton::paintEvent(QPaintEvent*) {
    const Appearance appearance = appearanceOf(palette());
    QPainter painter(this);
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(semanticColor(ColorRole::accent, appearance), 1));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), scaledPixels(4), scaledPixels(4));
    }
    QFont shown = font();
    shown.setUnderline(isEnabled() && underMouse());
    painter.setFont(shown);
    const ColorRole role = !isEnabled() ? ColorRole::disabledText : isDown() ? ColorRole::text : ColorRole::blue;
    painter.setPen(semanticColor(role, appearance));
    const QFontMetrics metrics = fontMetrics();
    const int baseline = (height() + metrics.ascent() - metrics.descent() + 1) / 2;
    painter.drawText(QPoint(padding(), baseline), text());
}

} // namespace quelm
