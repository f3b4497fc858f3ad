#pragma once

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEngine/ClusterShapes.h"
#include "Quelm/TextEngine/TextFont.h"

#include <QPointF>

#include <array>
#include <functional>
#include <vector>

class QPainter;

namespace quelm {

/// Draws characters at given places without shaping: glyphs are collected, and drawn in as few calls as there are
/// colours and fonts. Keeps its memory from row to row.
class GridGlyphs {
public:
    /// `x` is where the character begins, in the painter's coordinates; spaces and other characters draw nothing.
    void add(ColorRole role, char16_t unit, double x, const TextFont& font) {
        if (unit == u' ' || !TextFont::isPrintableASCII(unit))
            return;
        Glyphs& glyphs = glyphs_[static_cast<std::size_t>(role)];
        glyphs.indexes.push_back(font.glyph(unit));
        glyphs.places.emplace_back(x, 0);
    }

    /// Adds a cluster that has one of the shapes.
    void add(ColorRole role, const ClusterShapes& shapes, const ClusterShapes::Shape& shape, double x);

    /// Draws what was collected on a baseline, and forgets it.
    void draw(QPainter& painter, double baseline, const TextFont& font, const std::function<QColor(ColorRole)>& color);

private:
    struct Glyphs {
        std::vector<quint32> indexes;
        std::vector<QPointF> places;
    };
    /// Glyphs of other fonts than that of printable ASCII.
    struct OtherGlyphs {
        QRawFont font;
        ColorRole role;
        Glyphs glyphs;
    };

    Glyphs& glyphsOf(ColorRole role, const QRawFont& font);

    std::array<Glyphs, colorRoleCount> glyphs_;
    std::vector<OtherGlyphs> others_;
};

} // namespace quelm
