#pragma once

#include "Quelm/TextEngine/ClusterShapes.h"
#include "Quelm/TextEngine/ShapedText.h"

#include <memory>

namespace quelm {

/// A part of a long line on the grid of cells. It is cut into pieces: printable ASCII stands on the cells themselves,
/// other clusters that stand alone in the middle of theirs; what is shaped with its neighbours is so a stretch at a
/// time, once it is asked about, and fitted to its cells. Units and x count from the segment's start.
///
/// Invariants:
/// 1. The pieces cover the segment, in order, none of them empty; places between them are between grapheme clusters.
/// 2. A piece begins at the cell that is the sum of the cells of the units before it.
class GridSegment {
public:
    /// `shapes`, which are of the font, must outlive it.
    GridSegment(QString text, const TextFont& font, SharedClusterShapes& shapes);

    qint64 length() const { return display_.string.size(); }
    double width() const { return font_.advance() * static_cast<double>(cells_); }

    double x(qint64 unit) const;
    qint64 unitAt(double x) const;
    /// Clusters that the ends of `units` cut are covered in proportion or whole.
    void appendStretches(TextRange units, Stretches& stretches) const;

    /// `painting.origin`, `left` and `right` are those of the segment, `lineStart` the offset of its first unit. ASCII
    /// is only added to `painting.glyphs`.
    void paint(const RowPainting& painting) const;
    void forgetColors() const;

private:
    struct Piece {
        int start = 0;
        int length = 0;
        int cell = 0;
        int cells = 0;
        enum class Kind : quint8 {
            plain,
            /// One cluster that stands alone: an ideograph, a letter with a mark, an emoji, a sign.
            single,
            /// Shaped with its neighbours: a word.
            leftToRight,
            rightToLeft
        } kind = Kind::plain;

        int end() const { return start + length; }
    };
    /// How what is so wide by nature stands in the cells of a piece.
    struct Fit {
        double margin = 0;
        double scale = 1;
    };
    struct Fitted {
        std::unique_ptr<ShapedText> text;
        Fit fit;
    };

    Piece::Kind kindOf(qsizetype start, qsizetype end) const;
    /// In units, what is no single cluster.
    static int longestPiece(Piece::Kind kind);
    void addCluster(Piece cluster);
    bool joinsRightToLeft(const Piece& cluster) const;
    std::size_t pieceOfUnit(qint64 unit) const;
    std::size_t pieceOfCell(double cell) const;
    const Fitted& fitted(std::size_t index) const;
    Fit fit(const Piece& piece, double natural) const;
    double left(const Piece& piece) const { return font_.advance() * piece.cell; }
    double right(const Piece& piece) const { return font_.advance() * (piece.cell + piece.cells); }
    void appendPieceStretches(std::size_t index, TextRange units, Stretches& stretches) const;
    void paintPlain(const RowPainting& painting, const Piece& piece) const;
    void paintSingle(const RowPainting& painting, const Piece& piece) const;
    void paintShaped(const RowPainting& painting, std::size_t index) const;

    const TextFont font_;
    SharedClusterShapes& shapes_;
    const DisplayText display_;
    std::vector<Piece> pieces_;
    int cells_ = 0;
    /// Absent for what was not asked about yet, and for pieces that are no words.
    mutable std::vector<Fitted> fitted_;
};

} // namespace quelm
