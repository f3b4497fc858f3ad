#include "Quelm/TextEngine/ShapedText.h"

#include "Quelm/TextEngine/FewMarks.h"
#include "Quelm/TextEngine/TextClusters.h"

#include <QPainter>
#include <QTextOption>

#include <unicode/ubidi.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>

namespace quelm {

namespace {

/// Beyond any line of the length that is shaped, within what a text layout can measure.
constexpr double unlimitedWidth = 4'000'000;

/// Glyphs that are drawn in one call, so that a long row is not drawn whole where a part of it is in sight.
constexpr qsizetype mostGlyphsAFragment = 64;

/// Texts up to here, such as a row, are soon looked through.
constexpr qsizetype fewUnits = 256;

/// Whether a text may have characters that run from right to left.
bool isBidirectional(const QString& text) {
    return std::ranges::any_of(text, [](QChar unit) {
        const QChar::Direction direction = unit.direction();
        return direction == QChar::DirR || direction == QChar::DirAL || unit.isSurrogate() ||
               (unit.unicode() >= 0x2000 && unit.category() == QChar::Other_Format);
    });
}

/// Whether a text has characters that text layouts and ICU do not surely treat alike.
bool hasUnseenCharacters(const QString& text) {
    return std::ranges::any_of(text, [](QChar unit) {
        switch (unit.direction()) {
        case QChar::DirBN:
        case QChar::DirLRE:
        case QChar::DirLRO:
        case QChar::DirRLE:
        case QChar::DirRLO:
        case QChar::DirPDF:
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
        case QChar::DirPDI:
            return true;
        default:
            return false;
        }
    });
}

/// Calls `visit(start, end, level)` for the stretches of one direction.
template <class Visit>
void forEachLevel(const QString& text, Visit&& visit) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UBiDi, decltype(&ubidi_close)> bidi(ubidi_open(), ubidi_close);
    const auto* units = reinterpret_cast<const UChar*>(text.utf16());
    ubidi_setPara(bidi.get(), units, static_cast<int32_t>(text.size()), 0, nullptr, &error);
    require(U_SUCCESS(error), "a short text has directions");
    for (int32_t start = 0; start < text.size();) {
        int32_t end = start;
        UBiDiLevel level = 0;
        ubidi_getLogicalRun(bidi.get(), start, &end, &level);
        visit(start, end, level);
        start = end;
    }
}

QTextOption optionFor(const TextFont& font) {
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTabStopDistance(font.tabWidth());
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    return option;
}

} // namespace

ShapedText::ShapedText(const QString& text, const TextFont& font)
    : layout_(withFewMarks(text), font.font()), slack_(2.0 * font.rowHeight()) {
    if (isBidirectional(text))
        forEachLevel(text, [&](int start, int end, int level) { runs_.push_back({start, end, level % 2 != 0}); });
    else
        runs_.push_back({0, length(), false});
    looksAmongPlaces_ = text.size() <= fewUnits || hasUnseenCharacters(text);
    // So that the place before a character is where that character begins, in whichever direction it is read.
    layout_.setCursorMoveStyle(Qt::VisualMoveStyle);
    layout_.setTextOption(optionFor(font));
    layout_.setCacheEnabled(true);
    layout_.beginLayout();
    line_ = layout_.createLine();
    line_.setLineWidth(unlimitedWidth);
    line_.setPosition({0, -line_.ascent()});
    layout_.endLayout();
    width_ = line_.naturalTextWidth();
}

double ShapedText::leadingX(int index) const {
    return line_.cursorToX(index);
}

double ShapedText::trailingX(int end) const {
    return line_.cursorToX(layout_.previousCursorPosition(end), QTextLine::Trailing);
}

template <class Visit>
void ShapedText::forEachRun(TextRange indexes, Visit&& visit) const {
    for (const Run& run : runs_) {
        const TextRange common = indexes.intersection(TextRange::between(run.start, run.end));
        if (!common.isEmpty())
            visit(Run{static_cast<int>(common.location), static_cast<int>(common.end()), run.isRightToLeft});
    }
}

/// The place of the run, its end among them, that is nearest to `x`.
int ShapedText::placeInRun(const Run& run, double x) const {
    const auto place = [&](int index) {
        return index <= run.start || layout_.isValidCursorPosition(index)
                   ? index
                   : std::max(layout_.previousCursorPosition(index), run.start);
    };
    const auto placeX = [&](int index) { return index < run.end ? leadingX(index) : trailingX(run.end); };
    const auto isBefore = [&](int index) {
        const double at = placeX(index);
        return run.isRightToLeft ? at >= x : at <= x;
    };
    int low = run.start;
    int high = run.end;
    while (high - low > 1) {
        const int middle = (low + high) / 2;
        (isBefore(place(middle)) ? low : high) = middle;
    }
    const int before = place(low);
    const int after = std::min(layout_.nextCursorPosition(before), run.end);
    return std::abs(placeX(after) - x) < std::abs(placeX(before) - x) ? after : before;
}

int ShapedText::indexAt(int, double x) const {
    return looksAmongPlaces_ ? indexAmongPlaces(x) : indexAmongRuns(x);
}

int ShapedText::indexAmongPlaces(double x) const {
    if (places_.empty()) {
        clusters::forEach(layout_.text(), [&](qsizetype start, qsizetype) {
            places_.push_back({leadingX(static_cast<int>(start)), static_cast<int>(start)});
        });
        places_.push_back({leadingX(length()), length()});
        std::ranges::stable_sort(places_, {}, &Place::x);
    }
    const auto after = std::ranges::lower_bound(places_, x, {}, &Place::x);
    if (after == places_.begin())
        return after->index;
    const auto before = std::prev(after);
    return after == places_.end() || x - before->x <= after->x - x ? before->index : after->index;
}

int ShapedText::indexAmongRuns(double x) const {
    const TextRange range{0, length()};
    int nearest = 0;
    double leastDistance = std::numeric_limits<double>::max();
    double leastMiss = 0;
    // Two runs may touch at `x`; then the place in one of them is where a caret would really stand.
    forEachRun(range, [&](const Run& run) {
        constexpr double hair = 0.02;
        const auto [left, right] = std::minmax({leadingX(run.start), trailingX(run.end)});
        const double distance = std::max({left - x, x - right, 0.0});
        if (distance > leastDistance + hair)
            return;
        const int found = placeInRun(run, x);
        const double miss = std::abs(leadingX(found) - x);
        if (distance > leastDistance - hair && miss >= leastMiss)
            return;
        nearest = found;
        leastDistance = std::min(distance, leastDistance);
        leastMiss = miss;
    });
    return nearest;
}

void ShapedText::appendStretches(int, TextRange indexes, Stretches& stretches) const {
    if (indexes.isEmpty())
        return;
    if (indexes.length == length()) {
        stretches.emplace_back(0, width_);
        return;
    }
    forEachRun(indexes, [&](const Run& run) {
        const double from = leadingX(run.start);
        const double to = trailingX(run.end);
        stretches.emplace_back(std::min(from, to), std::max(from, to));
    });
}

void ShapedText::appendFragments(Fragments& fragments, const QGlyphRun& glyphs, ColorRole role) const {
    const QList<quint32> indexes = glyphs.glyphIndexes();
    const QList<QPointF> places = glyphs.positions();
    for (qsizetype start = 0; start < indexes.size(); start += mostGlyphsAFragment) {
        Fragment fragment{glyphs, role, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
        fragment.glyphs.setGlyphIndexes(indexes.mid(start, mostGlyphsAFragment));
        fragment.glyphs.setPositions(places.mid(start, mostGlyphsAFragment));
        const QList<QPointF> positions = fragment.glyphs.positions();
        for (const QPointF& place : positions) {
            fragment.left = std::min(fragment.left, place.x() - slack_);
            fragment.right = std::max(fragment.right, place.x() + slack_);
        }
        fragments.push_back(std::move(fragment));
    }
}

const ShapedText::Fragments& ShapedText::fragments(const TextPainting::ColorsOf& colorsOf) const {
    if (fragments_)
        return *fragments_;
    fragments_.emplace();
    colorsOf({0, length()}, [&](qint64 from, qint64 length, ColorRole role) {
        const QList<QGlyphRun> runs = line_.glyphRuns(static_cast<int>(from), static_cast<int>(length));
        for (const QGlyphRun& glyphs : runs)
            appendFragments(*fragments_, glyphs, role);
    });
    return *fragments_;
}

void ShapedText::paint(const TextPainting& painting, int) const {
    for (const Fragment& fragment : fragments(painting.colorsOf)) {
        if (fragment.right < painting.left || painting.right < fragment.left)
            continue;
        painting.painter.setPen(painting.color(fragment.role));
        painting.painter.drawGlyphRun(painting.origin, fragment.glyphs);
    }
}

} // namespace quelm
