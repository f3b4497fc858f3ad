#pragma once

#include "Quelm/TextEngine/DisplayText.h"
#include "Quelm/TextEngine/LineGeometry.h"

#include <QGlyphRun>
#include <QTextLayout>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quelm {

/// A piece of text, of bounded length and without line breaks, that is shaped as a whole: with marks, ligatures, emoji
/// sequences, several fonts and bidirectional text, from left to right as a whole, in one row or wrapped. Indexes are
/// those of the string. Its glyphs are kept by colour from one painting to the next.
class ShapedText {
public:
    ShapedText(const QString& text, const TextFont& font, std::optional<double> wrapWidth);
    /// In one row, every cluster that much wider than it is by nature.
    static std::unique_ptr<ShapedText> spaced(const QString& text, const TextFont& font, double spacing);

    int length() const { return static_cast<int>(layout_.text().size()); }
    int rowCount() const { return layout_.lineCount(); }
    int rowOf(int index) const;
    TextRange rowRange(int row) const;
    double x(int index) const;
    int indexAt(int row, double x) const;
    double width(int row) const;
    /// `indexes` lie in the row.
    void appendStretches(int row, TextRange indexes, Stretches& stretches) const;

    /// Calls its argument with the pieces of one colour of a stretch.
    using VisitColor = std::function<void(qint64 from, qint64 length, ColorRole role)>;
    using ColorsOf = std::function<void(TextRange stretch, const VisitColor& visit)>;

    /// Draws what meets [left, right] of the row and little more, the row's x beginning at `origin` on its baseline.
    /// Asks for colours when none are kept.
    void paint(QPainter& painter, int row, QPointF origin, double left, double right, const ColorsOf& colorsOf,
               const std::function<QColor(ColorRole)>& color) const;
    void forgetColors() const { rows_.clear(); }

private:
    ShapedText(const QString& text, const TextFont& font, const QFont& shapedFont, std::optional<double> wrapWidth);

    /// Some glyphs of one colour, and the x they meet.
    struct Fragment {
        QGlyphRun glyphs;
        ColorRole role;
        double left;
        double right;
    };
    using Row = std::vector<Fragment>;

    const Row& fragments(int row, const ColorsOf& colorsOf) const;
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
