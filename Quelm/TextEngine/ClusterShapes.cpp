#include "Quelm/TextEngine/ClusterShapes.h"

#include "Quelm/TextEngine/FewMarks.h"

#include <QGlyphRun>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace quelm {

namespace {

/// Far beyond any cluster.
constexpr double unlimitedWidth = 1'000'000;

/// Units that are shaped together, so few that to look among them costs little.
constexpr qsizetype mostTogether = 64;

/// Most ideographs, kana and Hangul syllables. None of those that several scripts share, for which another font may be
/// found where others stand before them.
bool isOfOneGlyph(QChar unit) {
    const char16_t code = unit.unicode();
    return (0x3041 <= code && code <= 0x3096)     // Hiragana
           || (0x30A1 <= code && code <= 0x30FA)  // Katakana
           || (0x3400 <= code && code <= 0x4DBF)  // ideographs
           || (0x4E00 <= code && code <= 0x9FFF)  // more of them
           || (0xAC00 <= code && code <= 0xD7A3); // Hangul syllables
}

/// One line of a few characters.
class ShapedCluster {
public:
    ShapedCluster(const QString& text, const QFont& font) : layout_(text, font) {
        layout_.beginLayout();
        line_ = layout_.createLine();
        line_.setLineWidth(unlimitedWidth);
        line_.setPosition({0, -line_.ascent()});
        layout_.endLayout();
    }

    const QTextLine& line() const { return line_; }

private:
    QTextLayout layout_;
    QTextLine line_;
};

bool hasPictures(const QRawFont& font) {
    return std::ranges::any_of(std::array{"CBDT", "sbix", "COLR", "SVG "},
                               [&](const char* table) { return !font.fontTable(table).isEmpty(); });
}

} // namespace

ClusterShapes::ClusterShapes(TextFont font) : font_(std::move(font)) {
    fonts_.push_back({font_.rawFont(), false});
}

ClusterShapes::UnitShape& ClusterShapes::ofUnit(QChar unit) {
    std::unique_ptr<Page>& page = pages_[unit.unicode() / pageSize];
    if (!page)
        page = std::make_unique<Page>();
    return (*page)[unit.unicode() % pageSize];
}

const ClusterShapes::Shape& ClusterShapes::shape(QStringView cluster) {
    if (cluster.size() == 1) {
        UnitShape& kept = ofUnit(cluster.front());
        if (!kept.isKnown)
            kept = {madeShape(cluster), true};
        return kept.shape;
    }
    const auto found = longer_.find(cluster);
    if (found != longer_.end())
        return found->second;
    return longer_.emplace(cluster.toString(), madeShape(cluster)).first->second;
}

void ClusterShapes::prepare(QStringView text) {
    QString unknown;
    for (const QChar unit : text) {
        if (!isOfOneGlyph(unit) || ofUnit(unit).isKnown || unknown.contains(unit))
            continue;
        unknown += unit;
        if (unknown.size() < mostTogether)
            continue;
        prepareTogether(unknown);
        unknown.clear();
    }
    if (unknown.size() > 1)
        prepareTogether(unknown);
}

void ClusterShapes::prepareTogether(const QString& units) {
    const ShapedCluster shaped(units, font_.font());
    std::vector<Glyph> glyphs = glyphsOf(shaped.line());
    if (static_cast<qsizetype>(glyphs.size()) != units.size())
        return;
    // The glyphs come a font after the other. Where each is not at the place of its own unit, units are left to be
    // shaped one by one.
    std::ranges::sort(glyphs, {}, [](const Glyph& glyph) { return glyph.place.x(); });
    double x = 0;
    for (qsizetype index = 0; index < units.size(); ++index) {
        constexpr double hair = 0.02;
        Glyph& glyph = glyphs[static_cast<std::size_t>(index)];
        const double end = shaped.line().cursorToX(static_cast<int>(index) + 1);
        if (std::abs(glyph.place.x() - x) > hair)
            return;
        glyph.place.setX(0);
        glyphs_.push_back(glyph);
        ofUnit(units[index]) = {{end - x, static_cast<quint32>(glyphs_.size() - 1), 1}, true};
        x = end;
    }
}

std::size_t ClusterShapes::fontNumber(const QRawFont& font) {
    const auto found = std::ranges::find(fonts_, font, &Font::font);
    const auto number = static_cast<std::size_t>(found - fonts_.begin());
    if (found == fonts_.end())
        fonts_.push_back({font, hasPictures(font)});
    return number;
}

std::vector<ClusterShapes::Glyph> ClusterShapes::glyphsOf(const QTextLine& line) {
    std::vector<Glyph> glyphs;
    const QList<QGlyphRun> runs = line.glyphRuns();
    for (const QGlyphRun& run : runs) {
        const std::size_t font = fontNumber(run.rawFont());
        const QList<quint32> indexes = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        for (qsizetype index = 0; index < indexes.size(); ++index)
            glyphs.push_back({font, indexes[index], places[index]});
    }
    return glyphs;
}

ClusterShapes::Shape ClusterShapes::madeShape(QStringView cluster) {
    const ShapedCluster shaped(withFewMarks(cluster.toString()), font_.font());
    const std::vector<Glyph> glyphs = glyphsOf(shaped.line());
    const Shape shape{shaped.line().cursorToX(static_cast<int>(cluster.size())), static_cast<quint32>(glyphs_.size()),
                      static_cast<quint32>(glyphs.size())};
    glyphs_.insert(glyphs_.end(), glyphs.begin(), glyphs.end());
    return shape;
}

const std::shared_ptr<ClusterShapes>& SharedClusterShapes::current() {
    if (current_->longerCount() >= capacity)
        current_ = std::make_shared<ClusterShapes>(current_->font());
    return current_;
}

} // namespace quelm
