#include "Quelm/TextEngine/GridGlyphs.h"

#include <QGlyphRun>
#include <QPainter>

namespace quelm {

void GridGlyphs::draw(QPainter& painter, double baseline, const TextFont& font,
                      const std::function<QColor(ColorRole)>& color) {
    QGlyphRun run;
    run.setRawFont(font.rawFont());
    for (std::size_t role = 0; role < glyphs_.size(); ++role) {
        Glyphs& glyphs = glyphs_[role];
        if (glyphs.indexes.empty())
            continue;
        run.setRawData(glyphs.indexes.data(), glyphs.places.data(), static_cast<int>(glyphs.indexes.size()));
        painter.setPen(color(static_cast<ColorRole>(role)));
        painter.drawGlyphRun({0, baseline}, run);
        glyphs.indexes.clear();
        glyphs.places.clear();
    }
}

} // namespace quelm
