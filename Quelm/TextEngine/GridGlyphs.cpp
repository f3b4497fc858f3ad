#include "Quelm/TextEngine/GridGlyphs.h"

#include <QGlyphRun>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quelm {

GridGlyphs::Glyphs& GridGlyphs::glyphsOf(ColorRole role, const QRawFont& font) {
    const auto found = std::ranges::find_if(
        others_, [&](const OtherGlyphs& other) { return other.role == role && other.font == font; });
    return found == others_.end() ? others_.emplace_back(font, role, Glyphs()).glyphs : found->glyphs;
}

void GridGlyphs::add(ColorRole role, const ClusterShapes& shapes, const ClusterShapes::Shape& shape, double x) {
    for (const ClusterShapes::Glyph& glyph : shapes.glyphs(shape)) {
        const ClusterShapes::Font& font = shapes.fonts()[glyph.font];
        Glyphs& glyphs = glyph.font == 0 ? glyphs_[static_cast<std::size_t>(role)] : glyphsOf(role, font.font);
        const QPointF place(x + glyph.place.x(), glyph.place.y());
        glyphs.indexes.push_back(glyph.index);
        glyphs.places.push_back(font.hasPictures ? QPointF(std::round(place.x()), place.y()) : place);
    }
}

void GridGlyphs::draw(QPainter& painter, double baseline, const TextFont& font,
                      const std::function<QColor(ColorRole)>& color) {
    const auto drawAll = [&](ColorRole role, const QRawFont& rawFont, Glyphs& glyphs) {
        if (glyphs.indexes.empty())
            return;
        QGlyphRun run;
        run.setRawFont(rawFont);
        run.setRawData(glyphs.indexes.data(), glyphs.places.data(), static_cast<int>(glyphs.indexes.size()));
        painter.setPen(color(role));
        painter.drawGlyphRun({0, baseline}, run);
        glyphs.indexes.clear();
        glyphs.places.clear();
    };
    for (std::size_t role = 0; role < glyphs_.size(); ++role)
        drawAll(static_cast<ColorRole>(role), font.rawFont(), glyphs_[role]);
    for (OtherGlyphs& other : others_)
        drawAll(other.role, other.font, other.glyphs);
    others_.clear();
}

} // namespace quelm
