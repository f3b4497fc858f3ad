#include "Quelm/EditorWindow/SymbolLabel.h"

#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/Symbols.h"

#include <QPainter>

namespace quelm {

void SymbolLabel::setSymbol(const QString& symbol, ColorRole role, const QString& name) {
    symbol_ = symbol;
    role_ = role;
    setAccessibleName(name);
    setToolTip(name);
    update();
}

QSize SymbolLabel::sizeHint() const {
    return {scaledPixels(14), scaledPixels(14)};
}

void SymbolLabel::paintEvent(QPaintEvent*) {
    if (symbol_.isEmpty())
        return;
    QPainter painter(this);
    const QSize size = sizeHint();
    const QRect place((width() - size.width()) / 2, (height() - size.height()) / 2, size.width(), size.height());
    paintSymbol(painter, symbol_, place, semanticColor(role_, appearanceOf(palette())));
}

} // namespace quelm
