#include "Quelm/Foundation/Appearance.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEngine/TextView.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <functional>

namespace quelm {

namespace {

/// How strongly marked stretches are tinted, so that their text stays readable.
constexpr double markOpacity = 0.22;
constexpr double indicatorOpacity = 0.34;
constexpr double bracketOpacity = 0.18;
constexpr double blockCaretOpacity = 0.35;

/// Coordinates beyond are out of every viewport.
constexpr double farAway = 1 << 24;

QColor translucent(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

int wholePixel(double coordinate) {
    return static_cast<int>(std::lround(std::clamp(coordinate, -farAway, farAway)));
}

} // namespace

/// What the rows of one paint event have in common.
struct TextView::Brush {
    QPainter& painter;
    QRect area;
    Appearance appearance;
    std::function<QColor(ColorRole)> color;
    /// The area's edges, from the start of the rows' text.
    double left;
    double right;
};

void TextView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setLayoutDirection(Qt::LeftToRight);
    const Appearance appearance = appearanceOf(palette());
    const QRect area = event->rect();
    const bool isLegible = isEnabled();
    const auto color = [appearance, isLegible](ColorRole role) {
        return semanticColor(isLegible ? role : ColorRole::disabledText, appearance);
    };
    const Brush brush{painter,
                      area,
                      appearance,
                      color,
                      area.left() - scrolling_->left(),
                      area.left() + area.width() - scrolling_->left()};

    const TextScrolling::Rows rows = scrolling_->rowsBetween(area.top(), area.top() + area.height());
    for (qint64 row = rows.first; row < rows.end; ++row)
        paintRow(brush, row);
    paintCaret(painter);
}

void TextView::paintRow(const Brush& brush, qint64 row) const {
    const TextRange text = layout_->rowRange(row);
    paintMarks(brush, row, text);
    paintBrackets(brush, row, text);
    paintSelection(brush, row, text);
    paintFindIndicator(brush, row, text);
    const QPointF origin(scrolling_->left(), scrolling_->top(row));
    layout_->paint(brush.painter, row, origin, brush.left, brush.right, brush.color);
}

std::vector<QRectF> TextView::areas(const Brush& brush, qint64 row, TextRange range) const {
    std::vector<QRectF> result;
    if (range.isEmpty())
        return result;
    const double left = scrolling_->left();
    for (const auto& [start, end] : layout_->stretches(row, range, brush.left, brush.right)) {
        const int first = wholePixel(left + start);
        result.emplace_back(first, scrolling_->top(row), wholePixel(left + end) - first, layout_->font().rowHeight());
    }
    return result;
}

void TextView::paintFrame(const Brush& brush, const QRectF& area) const {
    brush.painter.setPen(QPen(semanticColor(ColorRole::accent, brush.appearance), 1));
    brush.painter.setBrush(Qt::NoBrush);
    brush.painter.drawRect(area.adjusted(0.5, 0.5, -0.5, -0.5));
}

void TextView::paintMarks(const Brush& brush, qint64 row, TextRange text) const {
    const QColor tint = translucent(semanticColor(ColorRole::warning, brush.appearance), markOpacity);
    auto mark = std::ranges::lower_bound(marks_, text.location + 1, {}, &TextRange::end);
    for (; mark != marks_.end() && mark->location < text.end(); ++mark) {
        const bool isSelected = *mark == selectedRange();
        for (const QRectF& area : areas(brush, row, text.intersection(*mark))) {
            brush.painter.fillRect(area, tint);
            // The one of all marks that the selection is on stands out also while another widget has the focus.
            if (isSelected)
                paintFrame(brush, area);
        }
    }
}

void TextView::paintBrackets(const Brush& brush, qint64 row, TextRange text) const {
    const QColor ink = semanticColor(ColorRole::accent, brush.appearance);
    for (const TextRange bracket : brackets_)
        for (const QRectF& area : areas(brush, row, text.intersection(bracket))) {
            brush.painter.fillRect(area, translucent(ink, bracketOpacity));
            brush.painter.fillRect(QRectF(area.left(), area.bottom() - 1, area.width(), 1), ink);
        }
}

void TextView::paintSelection(const Brush& brush, qint64 row, TextRange text) const {
    const TextRange selected = selectedRange();
    if (selected.isEmpty() || selected.end() < text.location || selected.location > text.end())
        return;
    // A view that is rendered without being shown looks as it would in front.
    const bool isInFront = !isVisible() || (hasFocus() && isActiveWindow());
    const QColor tint =
        semanticColor(isInFront ? ColorRole::textSelection : ColorRole::inactiveSelection, brush.appearance);
    for (const QRectF& area : areas(brush, row, text.intersection(selected)))
        brush.painter.fillRect(area, tint);
    if (selected.end() <= text.end())
        return;
    // What goes on in the next row takes the rest of this one.
    const int end = wholePixel(scrolling_->left() + layout_->width(row));
    const int edge = brush.area.left() + brush.area.width();
    if (end < edge)
        brush.painter.fillRect(QRect(end, scrolling_->top(row), edge - end, layout_->font().rowHeight()), tint);
}

void TextView::paintFindIndicator(const Brush& brush, qint64 row, TextRange text) const {
    const auto range = findIndicator_.range();
    if (!range || range->end() < text.location || range->location > text.end())
        return;
    const double opacity = findIndicator_.opacity();
    const QColor glow = semanticColor(ColorRole::warning, brush.appearance);
    constexpr double radius = 4;
    brush.painter.save();
    brush.painter.setRenderHint(QPainter::Antialiasing);
    brush.painter.setPen(QPen(translucent(glow, opacity), 1));
    brush.painter.setBrush(translucent(glow, indicatorOpacity * opacity));
    for (const QRectF& area : areas(brush, row, text.intersection(*range)))
        brush.painter.drawRoundedRect(area.adjusted(-2.5, 0.5, 2.5, -0.5), radius, radius);
    brush.painter.restore();
}

void TextView::paintCaret(QPainter& painter) const {
    const QColor ink = semanticColor(ColorRole::text, appearanceOf(palette()));
    if (dropPlace_)
        painter.fillRect(caretRectangleAt(*dropPlace_), semanticColor(ColorRole::accent, appearanceOf(palette())));
    if (!hasFocus() || !caretBlinking_.isOn() || (isComposing() && !isCompositionCaretShown_))
        return;
    const QRect caret = caretRectangle();
    painter.fillRect(caret, caret.width() > caretWidth() ? translucent(ink, blockCaretOpacity) : ink);
}

int TextView::caretWidth() const {
    return std::max(1, static_cast<int>(std::lround(layout_->font().rowHeight() / 10.0)));
}

QRect TextView::caretRectangleAt(qint64 offset) const {
    return {wholePixel(std::floor(scrolling_->left() + layout_->caretX(offset))),
            scrolling_->top(layout_->caretRow(offset)), caretWidth(), layout_->font().rowHeight()};
}

QRect TextView::caretRectangle() const {
    const qint64 caret = editing_->selection().caret;
    QRect area = caretRectangleAt(caret);
    if (!editing_->isOverwriting() || isReadOnly() || isComposing())
        return area;
    // A block over the character that typing would replace, or over as much where the line ends.
    const qint64 next = navigation().destination(TextMotion::nextCharacter, caret, {});
    const qint64 row = layout_->rowOf(caret);
    const double width = layout_->rowRange(row).contains(caret) && layout_->rowOf(next) == row
                             ? layout_->x(next) - layout_->x(caret)
                             : layout_->font().advance();
    area.setWidth(std::max(caretWidth() + 1, wholePixel(width)));
    return area;
}

} // namespace quelm
