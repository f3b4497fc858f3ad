#pragma once

#include "Quelm/TextEngine/DisplayText.h"
#include "Quelm/TextEngine/LineText.h"

#include <QGlyphRun>
#include <QTextLayout>

#include <optional>
#include <vector>

namespace quelm {

/// A piece of text, of bounded length and without line breaks, that is shaped as a whole: with marks, ligatures, emoji
/// sequences, several fonts and bidirectional text, from left to right as a whole, in one row or wrapped. Its glyphs
/// are kept by colour from one painting to the next.
class ShapedText final : public LineText {
public:
    ShapedText(const QString& text, const TextFont& font, std::optional<double> wrapWidth);

    int length() const override { return static_cast<int>(layout_.text().size()); }
    int rowCount() const override { return layout_.lineCount(); }
    int rowOf(int index) const override;
    TextRange rowRange(int row) const override;
    double x(int index) const override;
    int indexAt(int row, double x) const override;
    double width(int row) const override;
    void appendStretches(int row, TextRange indexes, Stretches& stretches) const override;
    /// Asks for colours when none are kept.
    void paint(const TextPainting& painting, int row) const override;
    void forgetColors() const override { rows_.clear(); }

private:
    /// Some glyphs of one colour, and the x they meet.
    struct Fragment {
        QGlyphRun glyphs;
        ColorRole role;
        double left;
        double right;
    };
    using Row = std::vector<Fragment>;

    const Row& fragments(int row, const TextPainting::ColorsOf& colorsOf) const;
    void appendFragments(Row& fragments, const QGlyphRun& glyphs, ColorRole role) const;
    /// Characters that follow each other in one direction, and so stand side by side in a row.
    struct Run {
        int start = 0;
        int end = 0;
        bool isRightToLeft = false;
    };
    /// Calls `visit(Run)` for what the runs have in common with a stretch.
    template <class Visit>
    void forEachRun(TextRange indexes, Visit&& visit) const;
    int placeInRun(int row, const Run& run, double x) const;

    /// Where a character begins, and where the one before a place ends, in their own directions.
    double leadingX(int row, int index) const;
    double trailingX(int row, int end) const;
    double clamped(double x) const { return wrapWidth_ ? std::min(x, *wrapWidth_) : x; }

    QTextLayout layout_;
    const std::optional<double> wrapWidth_;
    /// How far glyphs may reach beyond their places.
    const double slack_;
    std::vector<Run> runs_;
    mutable std::vector<std::optional<Row>> rows_;
};

} // namespace quelm
