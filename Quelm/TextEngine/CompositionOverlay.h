#pragma once

#include "Quelm/TextEngine/LineGeometry.h"
#include "Quelm/TextEngine/ShapedText.h"

namespace quelm {

/// The text of an input method over a long line, whose characters it covers instead of moving them aside.
struct CompositionOverlay {
    /// A unit of the line.
    qint64 unit = 0;
    int caret = 0;
    /// Not owned.
    const ShapedText* text = nullptr;

    double caretX() const { return text->x(caret); }
    double width() const { return text->width(0); }
    /// `left` is in the row's x.
    void paint(const RowPainting& painting, double left, const TextFont& font) const;
};

} // namespace quelm
