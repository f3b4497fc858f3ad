#pragma once

#include "Quelm/TextEngine/DisplayText.h"
#include "Quelm/TextEngine/LineText.h"

#include <QGlyphRun>
#include <QTextLayout>

#include <optional>
#include <vector>

namespace quelm {

/// A piece of text, of bounded length and without line breaks, that is shaped as a whole: with marks, ligatures, emoji
/// sequences, several fonts and bidirectional text, from left to right as a whole, in one row. Its glyphs are kept by
/// colour from one painting to the next.
class ShapedText final : public LineText {
public:
    ShapedText(const QString& text, const TextFont& font);

    int length() const override { return static_cast<int>(layout_.text().size()); }
    int rowCount() const override { return 1; }
    int rowOf(int) const override { return 0; }
    TextRange rowRange(int) const override { return {0, length()}; }
    double x(int index) const override { return leadingX(index); }
    int indexAt(int row, double x) const override;
    double width(int) const override { return width_; }
    void appendStretches(int row, TextRange indexes, Stretches& stretches) const override;
    /// Asks for colours when none are kept.
    void paint(const TextPainting& painting, int row) const override;
    void forgetColors() const override { fragments_.reset(); }

private:
    /// Some glyphs of one colour, and the x they meet.
    struct Fragment {
        QGlyphRun glyphs;
        ColorRole role;
        double left;
        double right;
    };
    using Fragments = std::vector<Fragment>;

    const Fragments& fragments(const TextPainting::ColorsOf& colorsOf) const;
    void appendFragments(Fragments& fragments, const QGlyphRun& glyphs, ColorRole role) const;
    /// Characters that follow each other in one direction, and so stand side by side.
    struct Run {
        int start = 0;
        int end = 0;
        bool isRightToLeft = false;
    };
    /// Calls `visit(Run)` for what the runs have in common with a stretch.
    template <class Visit>
    void forEachRun(TextRange indexes, Visit&& visit) const;
    int placeInRun(const Run& run, double x) const;
    int indexAmongRuns(double x) const;
    int indexAmongPlaces(double x) const;

    /// Where a character begins, and where the one before a place ends, in their own directions.
    double leadingX(int index) const;
    double trailingX(int end) const;

    QTextLayout layout_;
    QTextLine line_;
    double width_ = 0;
    /// How far glyphs may reach beyond their places.
    const double slack_;
    std::vector<Run> runs_;
    /// Whether places are looked for one by one, because runs and clusters are not surely those that the characters
    /// are shaped in, or because there are few.
    bool looksAmongPlaces_ = false;
    struct Place {
        double x = 0;
        int index = 0;
    };
    /// All places between clusters from left to right, once they are needed.
    mutable std::vector<Place> places_;
    mutable std::optional<Fragments> fragments_;
};

} // namespace quelm
