#include "Quelm/TextEngine/WrappedText.h"

#include "Quelm/TextEngine/ClusterText.h"
#include "Quelm/TextEngine/LineBreaks.h"
#include "Quelm/TextEngine/ShapedText.h"
#include "Quelm/TextEngine/TextClusters.h"

#include <QPainter>

#include <unicode/ubrk.h>

#include <algorithm>

namespace quelm {

namespace {

/// Sums of widths that fit exactly may be a little off.
constexpr double hair = 0.01;

struct Close {
    void operator()(UBreakIterator* rules) const { ubrk_close(rules); }
};

/// The places between the clusters of a text, its ends among them. ICU's rules see all of the text, because in some
/// scripts a letter joins what is before a mark.
std::vector<int> clusterPlaces(const QString& string) {
    UErrorCode error = U_ZERO_ERROR;
    static const std::unique_ptr<UBreakIterator, Close> rules(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &error));
    ubrk_setText(rules.get(), reinterpret_cast<const UChar*>(string.utf16()), static_cast<int32_t>(string.size()),
                 &error);
    require(U_SUCCESS(error), "ICU finds the clusters of a text");
    std::vector<int> places{0};
    for (int32_t end = ubrk_next(rules.get()); end != UBRK_DONE; end = ubrk_next(rules.get()))
        places.push_back(end);
    return places;
}

std::unique_ptr<const LineText> inOneRow(QString text, const TextFont& font,
                                         const std::shared_ptr<ClusterShapes>& shapes) {
    if (clusters::standAlone(text))
        return std::make_unique<const ClusterText>(std::move(text), shapes);
    return std::make_unique<const ShapedText>(text, font);
}

/// Finds where the rows of a text end, by the widths of its clusters in stretches of it that are laid out in one row.
/// Clusters are counted by the number of the place before them.
class RowCutter {
public:
    RowCutter(const QString& string, const TextFont& font, const std::shared_ptr<ClusterShapes>& shapes, double width)
        : string_(string), font_(font), shapes_(shapes), width_(width), places_(clusterPlaces(string)),
          last_(places_.size() - 1), breaks_(string),
          // How wide a tab is depends on where its row begins.
          rowsAStretch_(string.contains(u'\t') ? 1 : 2) {}

    bool isAtEnd() const { return first_ == last_; }
    int start() const { return places_[first_]; }

    /// Goes to the end of the row that begins here.
    void goOn() {
        if (!stretch_ || rowsAStretch_ == 1)
            layOut(likelyCount());
        std::size_t end = lastFitting();
        while (end == stretchEnd_ && end < last_) {
            layOut(stretchStart_ == first_ ? 2 * (stretchEnd_ - stretchStart_) : likelyCount());
            end = lastFitting();
        }
        first_ = end == last_ ? last_ : wordEnd(std::max(end, first_ + 1));
    }

private:
    /// A few more clusters than the rows of a stretch will hold.
    std::size_t likelyCount() const {
        return rowsAStretch_ * static_cast<std::size_t>(std::min(width_ / font_.advance(), 1e6)) + 8;
    }

    void layOut(std::size_t count) {
        stretchStart_ = first_;
        stretchEnd_ = std::min(first_ + count, last_);
        stretch_ = inOneRow(string_.mid(start(), places_[stretchEnd_] - start()), font_, shapes_);
    }

    /// The width of a cluster, wherever it stands in its stretch.
    double widthOf(std::size_t cluster) {
        parts_.clear();
        stretch_->appendStretches(
            0, {places_[cluster] - places_[stretchStart_], places_[cluster + 1] - places_[cluster]}, parts_);
        double sum = 0;
        for (const auto& [left, right] : parts_)
            sum += right - left;
        return sum;
    }

    /// Where the clusters of this stretch end that a row from here has room for.
    std::size_t lastFitting() {
        if (stretchStart_ == first_ && stretch_->width(0) <= width_ + hair)
            return stretchEnd_;
        double sum = 0;
        for (std::size_t end = first_; end < stretchEnd_; ++end) {
            sum += widthOf(end);
            if (sum > width_ + hair)
                return end;
        }
        return stretchEnd_;
    }

    /// The last end of a word from here up to a place, or that place itself.
    std::size_t wordEnd(std::size_t end) const {
        const auto place = static_cast<int>(breaks_.lastUpTo(places_[end]));
        const auto first = places_.begin() + static_cast<std::ptrdiff_t>(first_);
        const auto found = std::lower_bound(first, places_.begin() + static_cast<std::ptrdiff_t>(end), place);
        return *found == place && found > first ? static_cast<std::size_t>(found - places_.begin()) : end;
    }

    const QString& string_;
    const TextFont& font_;
    const std::shared_ptr<ClusterShapes>& shapes_;
    const double width_;
    const std::vector<int> places_;
    const std::size_t last_;
    const LineBreaks breaks_;
    const std::size_t rowsAStretch_;
    /// Where the next row begins.
    std::size_t first_ = 0;
    std::size_t stretchStart_ = 0;
    std::size_t stretchEnd_ = 0;
    std::unique_ptr<const LineText> stretch_;
    /// For use in between.
    Stretches parts_;
};

} // namespace

WrappedText::WrappedText(QString string, const TextFont& font, std::shared_ptr<ClusterShapes> shapes, double width)
    : string_(std::move(string)), font_(font), shapes_(std::move(shapes)), width_(width) {
    RowCutter cutter(string_, font_, shapes_, width_);
    do {
        const int start = cutter.start();
        if (!cutter.isAtEnd())
            cutter.goOn();
        rows_.push_back({start, cutter.start() - start, nullptr, 1});
    } while (!cutter.isAtEnd());
}

const WrappedText::Row& WrappedText::laidOut(int row) const {
    const Row& kept = at(row);
    if (kept.text)
        return kept;
    kept.text = inOneRow(string_.mid(kept.start, kept.length), font_, shapes_);
    const double natural = kept.text->width(0);
    if (natural > width_ + hair && clusterPlaces(string_.mid(kept.start, kept.length)).size() > 2)
        kept.scale = width_ / natural;
    return kept;
}

int WrappedText::rowOf(int index) const {
    const auto next = std::ranges::upper_bound(rows_, index, {}, &Row::start);
    return static_cast<int>(next - rows_.begin() - 1);
}

double WrappedText::x(int index) const {
    const Row& row = laidOut(rowOf(index));
    return row.scale * row.text->x(index - row.start);
}

int WrappedText::indexAt(int row, double x) const {
    const Row& of = laidOut(row);
    return of.start + of.text->indexAt(0, x / of.scale);
}

double WrappedText::width(int row) const {
    return laidOut(row).scale * laidOut(row).text->width(0);
}

void WrappedText::appendStretches(int row, TextRange indexes, Stretches& stretches) const {
    const Row& of = laidOut(row);
    Stretches natural;
    of.text->appendStretches(0, {indexes.location - of.start, indexes.length}, natural);
    for (const auto& [left, right] : natural)
        stretches.emplace_back(of.scale * left, of.scale * right);
}

void WrappedText::paint(const TextPainting& painting, int row) const {
    const Row& of = laidOut(row);
    const TextPainting::ColorsOf colorsOf = [&](TextRange stretch, const TextPainting::VisitColor& visit) {
        painting.colorsOf({of.start + stretch.location, stretch.length},
                          [&](qint64 from, qint64 length, ColorRole role) { visit(from - of.start, length, role); });
    };
    const auto paintAt = [&](QPointF origin) {
        of.text->paint({painting.painter, origin, painting.left / of.scale, painting.right / of.scale, colorsOf,
                        painting.color, painting.glyphs},
                       0);
    };
    if (of.scale == 1)
        return paintAt(painting.origin);
    painting.painter.save();
    painting.painter.translate(painting.origin);
    painting.painter.scale(of.scale, 1);
    paintAt({0, 0});
    painting.painter.restore();
}

void WrappedText::forgetColors() const {
    for (const Row& row : rows_)
        if (row.text)
            row.text->forgetColors();
}

void WrappedText::checkInvariants() const {
    require(!rows_.empty(), "a text has a row");
    const std::vector<int> places = clusterPlaces(string_);
    int end = 0;
    for (int row = 0; row < rowCount(); ++row) {
        require(at(row).start == end && (at(row).length > 0 || length() == 0), "rows cover the text in order");
        const auto start = std::ranges::lower_bound(places, end);
        require(*start == end, "a row begins between clusters");
        end += at(row).length;
        require(width(row) <= width_ + hair || *(start + 1) == end, "a row fits or is a single cluster");
    }
    require(end == length(), "rows cover the whole text");
}

} // namespace quelm
