#pragma once

#include "Quelm/TextEngine/TextFont.h"

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

class QTextLine;

namespace quelm {

/// How grapheme clusters that stand alone look in a font: each is shaped once, when it is first met. Clusters without
/// looks of their own have no glyphs. References to shapes stay valid as long as this. For the main thread.
class ClusterShapes {
public:
    explicit ClusterShapes(TextFont font);
    ClusterShapes(const ClusterShapes&) = delete;
    ClusterShapes& operator=(const ClusterShapes&) = delete;

    struct Glyph {
        /// One of `fonts()`.
        std::size_t font = 0;
        quint32 index = 0;
        /// From where the cluster begins, on the baseline.
        QPointF place;
    };
    struct Shape {
        double width = 0;
        quint32 firstGlyph = 0;
        quint32 glyphCount = 0;
    };
    struct Font {
        QRawFont font;
        /// Its glyphs are pictures, each of which costs much to draw for the first time at every fraction of a pixel.
        bool hasPictures = false;
    };

    const TextFont& font() const { return font_; }
    std::span<const Font> fonts() const { return fonts_; }

    const Shape& shape(QStringView cluster);
    /// Makes the shapes of the text's ideographs, kana and Hangul syllables that are not known yet, many at a time,
    /// which is several times as fast as one by one. O(length) when there are none.
    void prepare(QStringView text);
    std::span<const Glyph> glyphs(const Shape& shape) const {
        return std::span(glyphs_).subspan(shape.firstGlyph, shape.glyphCount);
    }

    /// The clusters of more than one unit. Those of one unit are only so many as there are units.
    std::size_t longerCount() const { return longer_.size(); }

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(QStringView text) const { return qHash(text); }
    };
    static constexpr std::size_t pageSize = 256;
    struct UnitShape {
        Shape shape;
        bool isKnown = false;
    };
    using Page = std::array<UnitShape, pageSize>;

    UnitShape& ofUnit(QChar unit);
    void prepareTogether(const QString& units);
    Shape madeShape(QStringView cluster);
    std::vector<Glyph> glyphsOf(const QTextLine& line);
    std::size_t fontNumber(const QRawFont& font);

    const TextFont font_;
    std::vector<Font> fonts_;
    std::vector<Glyph> glyphs_;
    /// Of clusters of one unit, which most are, by that unit.
    std::array<std::unique_ptr<Page>, 0x10000 / pageSize> pages_;
    std::unordered_map<QString, Shape, Hash, std::equal_to<>> longer_;
};

/// The shapes that a layout shares among its lines. When there are many, lines that are made later begin others, and
/// the first ones go with the last line that uses them.
class SharedClusterShapes {
public:
    /// More clusters of several units than nearly any text has. What one line adds may go beyond it.
    static constexpr std::size_t capacity = 8192;

    explicit SharedClusterShapes(const TextFont& font) { setFont(font); }

    void setFont(const TextFont& font) { current_ = std::make_shared<ClusterShapes>(font); }
    /// Those to be used by a new line, or for one question.
    const std::shared_ptr<ClusterShapes>& current();

private:
    std::shared_ptr<ClusterShapes> current_;
};

} // namespace quelm
