#pragma once

#include <QFont>
#include <QPointF>
#include <QRawFont>
#include <QRectF>

#include <array>
#include <cstdint>

namespace quelm {

/// A fixed-pitch font with the measures that text is laid out by. A value; cheap to copy.
class TextFont {
public:
    explicit TextFont(const QFont& font);

    const QFont& font() const { return font_; }
    /// The width of every printable ASCII character.
    double advance() const { return advance_; }
    /// The height of a row: a whole number of pixels.
    int rowHeight() const { return rowHeight_; }
    /// From a row's top to its baseline: a whole number of pixels.
    int ascent() const { return ascent_; }
    static constexpr int tabColumns = 4;
    /// The distance between tab stops.
    double tabWidth() const { return tabColumns * advance_; }

    /// Where the line under a stretch of a row is drawn, the row's x beginning at `origin` on the baseline.
    QRectF underline(QPointF origin, double left, double right) const;

    /// The raw font of printable ASCII characters and their glyphs (from U+0020 to U+007E), drawn without shaping.
    const QRawFont& rawFont() const { return rawFont_; }
    std::uint32_t glyph(char16_t printable) const { return glyphs_[printable - u' ']; }

    static constexpr bool isPrintableASCII(char16_t unit) { return u' ' <= unit && unit <= u'~'; }

private:
    QFont font_;
    QRawFont rawFont_;
    std::array<std::uint32_t, u'~' - u' ' + 1> glyphs_{};
    double advance_ = 0;
    int rowHeight_ = 0;
    int ascent_ = 0;
};

} // namespace quelm
