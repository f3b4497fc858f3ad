#include "Quelm/TextEngine/CompositionOverlay.h"

#include <QPainter>

namespace quelm {

void CompositionOverlay::paint(const RowPainting& painting, double left, const TextFont& font) const {
    const QPointF place = painting.origin + QPointF(left, 0);
    painting.painter.fillRect(QRectF(place.x(), place.y() - font.ascent(), width(), font.rowHeight()),
                              painting.color(ColorRole::contentBackground));
    const TextPainting::ColorsOf colorsOf = [](TextRange stretch, const TextPainting::VisitColor& visit) {
        visit(stretch.location, stretch.length, ColorRole::text);
    };
    text->paint({painting.painter, place, painting.left - left, painting.right - left, colorsOf, painting.color,
                 painting.glyphs},
                0);
    painting.painter.fillRect(font.underline(place, 0, width()), painting.color(ColorRole::text));
}

} // namespace quelm
