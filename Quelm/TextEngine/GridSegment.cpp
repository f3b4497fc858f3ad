#include "Quelm/TextEngine/GridSegment.h"

#include "Quelm/TextEngine/TextClusters.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quelm {

namespace {

/// Words are never drawn wider than this; what they have more room than that stays empty on both sides.
constexpr double widestScale = 1.2;

/// Longer stretches are cut, so that what is shaped at a time is bounded.
constexpr int longestWord = 256;

/// Spaces and the like between two words of right-to-left text that are kept in its order.
constexpr int longestGap = 3;

bool isPlainUnit(QChar unit) {
    return TextFont::isPrintableASCII(unit.unicode()) || unit == QChar(u'\t');
}

bool isRightToLeft(char32_t scalar) {
    const QChar::Direction direction = QChar::direction(scalar);
    return direction == QChar::DirR || direction == QChar::DirAL;
}

char32_t scalarAt(QStringView text, qsizetype index) {
    const QChar unit = text.at(index);
    if (unit.isHighSurrogate() && index + 1 < text.size())
        return QChar::surrogateToUcs4(unit, text.at(index + 1));
    return unit.unicode();
}

int cellsOf(QStringView text) {
    int cells = 0;
    for (const QChar unit : text)
        cells += cellsOfUnit(unit.unicode());
    return cells;
}

} // namespace

GridSegment::GridSegment(QString text, const TextFont& font, SharedClusterShapes& shapes)
    : font_(font), shapes_(shapes), display_(displayText(text)) {
    // Cells are those of the text, not those of the signs that stand for some of it.
    cells_ = cellsOf(text);
    if (isPlainText(text)) {
        pieces_.push_back({0, static_cast<int>(text.size()), 0, cells_, Piece::Kind::plain});
    } else {
        int cell = 0;
        clusters::forEach(display_.string, [&](qsizetype start, qsizetype end) {
            const int cells = cellsOf(QStringView(text).sliced(start, end - start));
            addCluster({static_cast<int>(start), static_cast<int>(end - start), cell, cells, kindOf(start, end)});
            cell += cells;
        });
    }
    fitted_.resize(pieces_.size());
}

GridSegment::Piece::Kind GridSegment::kindOf(qsizetype start, qsizetype end) const {
    if (end - start == 1 && isPlainUnit(display_.string.at(start)))
        return Piece::Kind::plain;
    if (clusters::standAlone(QStringView(display_.string).sliced(start, end - start)))
        return Piece::Kind::single;
    return isRightToLeft(scalarAt(display_.string, start)) ? Piece::Kind::rightToLeft : Piece::Kind::leftToRight;
}

/// Whether the cluster goes on a right-to-left stretch that the last two pieces, a word and a gap, belong to.
bool GridSegment::joinsRightToLeft(const Piece& cluster) const {
    if (cluster.kind != Piece::Kind::rightToLeft || pieces_.size() < 2)
        return false;
    const Piece& gap = pieces_.back();
    const Piece& word = pieces_[pieces_.size() - 2];
    if (gap.kind != Piece::Kind::plain || word.kind != Piece::Kind::rightToLeft || gap.length > longestGap)
        return false;
    const QStringView text = QStringView(display_.string).sliced(gap.start, gap.length);
    return cluster.end() - word.start <= longestWord &&
           std::ranges::none_of(text, [](QChar unit) { return unit.isLetterOrNumber() || unit == QChar(u'\t'); });
}

int GridSegment::longestPiece(Piece::Kind kind) {
    switch (kind) {
    case Piece::Kind::plain:
        return std::numeric_limits<int>::max();
    case Piece::Kind::single:
        return 0;
    case Piece::Kind::leftToRight:
    case Piece::Kind::rightToLeft:
        return longestWord;
    }
    programmingError("a piece is of a kind that there is");
}

void GridSegment::addCluster(Piece cluster) {
    if (joinsRightToLeft(cluster))
        pieces_.pop_back();
    else if (pieces_.empty() || pieces_.back().kind != cluster.kind ||
             cluster.end() - pieces_.back().start > longestPiece(cluster.kind)) {
        pieces_.push_back(cluster);
        return;
    }
    Piece& piece = pieces_.back();
    piece.length = cluster.end() - piece.start;
    piece.cells = cluster.cell + cluster.cells - piece.cell;
}

std::size_t GridSegment::pieceOfUnit(qint64 unit) const {
    const auto next = std::ranges::upper_bound(pieces_, unit, {}, &Piece::start);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(next - pieces_.begin() - 1, 0));
}

std::size_t GridSegment::pieceOfCell(double cell) const {
    const auto next = std::ranges::upper_bound(pieces_, cell, {}, &Piece::cell);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(next - pieces_.begin() - 1, 0));
}

GridSegment::Fit GridSegment::fit(const Piece& piece, double natural) const {
    const double room = right(piece) - left(piece);
    // A hair of difference is rounding, which fitting would only blur.
    if (natural <= 0 || std::abs(natural - room) < 0.01 * room)
        return {};
    const double scale = std::min(room / natural, piece.kind == Piece::Kind::single ? 1 : widestScale);
    return {std::max((room - scale * natural) / 2, 0.0), scale};
}

const GridSegment::Fitted& GridSegment::fitted(std::size_t index) const {
    Fitted& kept = fitted_[index];
    if (!kept.text) {
        const Piece& piece = pieces_[index];
        kept.text = std::make_unique<ShapedText>(display_.string.mid(piece.start, piece.length), font_);
        kept.fit = fit(piece, kept.text->width(0));
    }
    return kept;
}

double GridSegment::x(qint64 unit) const {
    if (unit >= length())
        return width();
    const std::size_t index = pieceOfUnit(unit);
    const Piece& piece = pieces_[index];
    const qint64 within = unit - piece.start;
    if (piece.kind == Piece::Kind::plain)
        return left(piece) + font_.advance() * static_cast<double>(within);
    if (piece.kind == Piece::Kind::single || (within == 0 && piece.kind != Piece::Kind::rightToLeft))
        return left(piece);
    const auto& [text, fit] = fitted(index);
    return left(piece) + fit.margin + fit.scale * text->x(static_cast<int>(within));
}

qint64 GridSegment::unitAt(double x) const {
    if (x <= 0 || x >= width())
        return x <= 0 ? 0 : length();
    const double cell = x / font_.advance();
    const std::size_t index = pieceOfCell(cell);
    const Piece& piece = pieces_[index];
    if (piece.kind == Piece::Kind::plain)
        return piece.start + std::clamp(std::lround(cell - piece.cell), 0L, static_cast<long>(piece.length));
    if (piece.kind == Piece::Kind::single)
        return right(piece) - x < x - left(piece) ? piece.end() : piece.start;
    const auto& [text, fit] = fitted(index);
    return piece.start + text->indexAt(0, (x - left(piece) - fit.margin) / fit.scale);
}

void GridSegment::appendPieceStretches(std::size_t index, TextRange units, Stretches& stretches) const {
    const Piece& piece = pieces_[index];
    const TextRange common = TextRange{piece.start, piece.length}.intersection(units);
    if (common.isEmpty())
        return;
    if (common.length == piece.length || piece.kind == Piece::Kind::single) {
        stretches.emplace_back(left(piece), right(piece));
        return;
    }
    if (piece.kind == Piece::Kind::plain) {
        stretches.emplace_back(x(common.location), x(common.location) + font_.advance() * double(common.length));
        return;
    }
    const auto& [text, fit] = fitted(index);
    Stretches within;
    text->appendStretches(0, {common.location - piece.start, common.length}, within);
    for (const auto& [from, to] : within)
        stretches.emplace_back(left(piece) + fit.margin + fit.scale * from, left(piece) + fit.margin + fit.scale * to);
}

void GridSegment::appendStretches(TextRange units, Stretches& stretches) const {
    if (units.isEmpty())
        return;
    const std::size_t first = pieceOfUnit(units.location);
    const std::size_t last = pieceOfUnit(units.end() - 1);
    appendPieceStretches(first, units, stretches);
    if (last > first + 1)
        stretches.emplace_back(left(pieces_[first + 1]), right(pieces_[last - 1]));
    if (last > first)
        appendPieceStretches(last, units, stretches);
}

void GridSegment::paintPlain(const RowPainting& painting, const Piece& piece) const {
    const double origin = left(piece);
    const auto unitNear = [&](double x) {
        return static_cast<qint64>(std::clamp((x - origin) / font_.advance(), 0.0, double(piece.length)));
    };
    const qint64 first = piece.start + unitNear(painting.left);
    const qint64 end = std::min<qint64>(piece.start + unitNear(painting.right) + 1, piece.end());
    if (first >= end)
        return;
    painting.attributes.forEach({painting.lineStart + first, end - first}, [&](const AttributeRuns::PlacedRun& placed) {
        const ColorRole role = placed.run.attributes.foreground;
        for (qint64 offset = placed.location; offset < placed.end(); ++offset) {
            const qint64 unit = offset - painting.lineStart;
            const double x = painting.origin.x() + origin + font_.advance() * double(unit - piece.start);
            painting.glyphs.add(role, display_.string.at(unit).unicode(), x, font_);
        }
    });
}

void GridSegment::paintSingle(const RowPainting& painting, const Piece& piece) const {
    const std::shared_ptr<ClusterShapes> shapes = shapes_.current();
    const QStringView cluster = QStringView(display_.string).sliced(piece.start, piece.length);
    const ClusterShapes::Shape& shape = shapes->shape(cluster);
    ColorRole role = ColorRole::text;
    forEachColor(display_, painting.attributes, painting.lineStart, {piece.start, 1},
                 [&](qint64, qint64, ColorRole found) { role = found; });
    const Fit in = fit(piece, shape.width);
    const double x = painting.origin.x() + left(piece) + in.margin;
    if (in.scale == 1) {
        painting.glyphs.add(role, *shapes, shape, x);
        return;
    }
    GridGlyphs narrowed;
    narrowed.add(role, *shapes, shape, 0);
    painting.painter.save();
    painting.painter.translate(x, painting.origin.y());
    painting.painter.scale(in.scale, 1);
    narrowed.draw(painting.painter, 0, font_, painting.color);
    painting.painter.restore();
}

void GridSegment::paintShaped(const RowPainting& painting, std::size_t index) const {
    const Piece& piece = pieces_[index];
    const auto& [text, fit] = fitted(index);
    const TextPainting::ColorsOf colorsOf = [&](TextRange stretch, const TextPainting::VisitColor& visit) {
        const TextRange units{piece.start + stretch.location, stretch.length};
        forEachColor(display_, painting.attributes, painting.lineStart, units,
                     [&](qint64 from, qint64 length, ColorRole role) { visit(from - piece.start, length, role); });
    };
    const double start = left(piece) + fit.margin;
    const QPointF place(painting.origin.x() + start, painting.origin.y());
    const double from = (painting.left - start) / fit.scale;
    const double to = (painting.right - start) / fit.scale;
    if (fit.scale == 1) {
        text->paint({painting.painter, place, from, to, colorsOf, painting.color, painting.glyphs}, 0);
        return;
    }
    painting.painter.save();
    painting.painter.translate(place);
    painting.painter.scale(fit.scale, 1);
    text->paint({painting.painter, {0, 0}, from, to, colorsOf, painting.color, painting.glyphs}, 0);
    painting.painter.restore();
}

void GridSegment::paint(const RowPainting& painting) const {
    const std::size_t first = pieceOfCell(painting.left / font_.advance());
    const std::size_t end = pieceOfCell(painting.right / font_.advance()) + 1;
    const int start = pieces_[first].start;
    shapes_.current()->prepare(QStringView(display_.string).sliced(start, pieces_[end - 1].end() - start));
    for (std::size_t index = first; index < end; ++index) {
        switch (pieces_[index].kind) {
        case Piece::Kind::plain:
            paintPlain(painting, pieces_[index]);
            break;
        case Piece::Kind::single:
            paintSingle(painting, pieces_[index]);
            break;
        case Piece::Kind::leftToRight:
        case Piece::Kind::rightToLeft:
            paintShaped(painting, index);
        }
    }
}

void GridSegment::forgetColors() const {
    for (const Fitted& fit : fitted_)
        if (fit.text)
            fit.text->forgetColors();
}

} // namespace quelm
