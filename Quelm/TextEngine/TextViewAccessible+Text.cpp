#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEngine/AccessibleOffsets.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TextEngine/TextViewAccessible.h"

#include <QFontInfo>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

/// Text attributes are written "name:value;", what has a meaning there with a backslash.
QString escaped(const QString& value) {
    QString result;
    for (const QChar unit : value) {
        if (QStringLiteral("\\:;,=\"").contains(unit))
            result += u'\\';
        result += unit;
    }
    return result;
}

QString colorAttribute(const QColor& color) {
    return QStringLiteral("color:rgb(%1,%2,%3);").arg(color.red()).arg(color.green()).arg(color.blue());
}

QString fontAttributes(const QFont& font) {
    const QFontInfo info(font);
    return QStringLiteral("font-family:\"%1\";font-size:%2pt;")
        .arg(escaped(info.family()), QString::number(info.pointSizeF()));
}

} // namespace

int TextViewAccessible::characterCount() const {
    return accessibleOffset(length());
}

QString TextViewAccessible::text(int start, int end) const {
    TextRange range = stretch(start, end);
    range.length = std::min<qint64>(range.length, longestText);
    return view().textStorage().string(range);
}

QString TextViewAccessible::handOut(std::optional<TextRange> unit, int* start, int* end) const {
    *start = unit ? accessibleOffset(unit->location) : -1;
    *end = unit ? accessibleOffset(unit->end()) : -1;
    return unit ? view().textStorage().string(*unit) : QString();
}

QString TextViewAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                                             int* end) const {
    const qint64 place = resolved(offset);
    return handOut(isInText(place) ? units().unitBefore(place, kind) : std::nullopt, start, end);
}

QString TextViewAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType kind, int* start, int* end) const {
    const qint64 place = resolved(offset);
    return handOut(isInText(place) ? std::optional(units().unitAt(place, kind)) : std::nullopt, start, end);
}

QString TextViewAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                                            int* end) const {
    const qint64 place = resolved(offset);
    return handOut(isInText(place) ? units().unitAfter(place, kind) : std::nullopt, start, end);
}

QString TextViewAccessible::attributes(int offset, int* start, int* end) const {
    const qint64 place = resolved(offset);
    if (!isInText(place) || length() == 0) {
        *start = *end = -1;
        return {};
    }
    const AttributeRuns::PlacedRun placed = view().textStorage().attributes().runAfter(std::min(place, length() - 1));
    *start = accessibleOffset(placed.location);
    *end = accessibleOffset(placed.end());
    const QColor color = semanticColor(placed.run.attributes.foreground, appearanceOf(view().palette()));
    return colorAttribute(color) + fontAttributes(view().textLayout().font().font());
}

// Places on screen.

/// The area of the character after `offset` in the viewport's coordinates, or of a caret where there is none.
QRect TextViewAccessible::characterArea(qint64 offset) const {
    const TextLayout& layout = view().textLayout();
    const TextRange character = units().unitAt(offset, QAccessible::CharBoundary);
    QRect area = view().caretRectangleAt(character.location);

    constexpr double nearby = 1 << 16; // wider than any character
    const double x = layout.x(character.location);
    const auto stretches = layout.stretches(layout.rowOf(character.location), character, x - nearby, x + nearby);
    if (stretches.empty())
        return area;
    double left = stretches.front().first;
    double right = stretches.front().second;
    for (const auto& [start, end] : stretches) {
        left = std::min(left, start);
        right = std::max(right, end);
    }
    area.translate(static_cast<int>(std::lround(left - x)), 0);
    area.setWidth(std::max(1, static_cast<int>(std::lround(right - left))));
    return area;
}

QRect TextViewAccessible::characterRect(int offset) const {
    const qint64 place = resolved(offset);
    if (!isInText(place))
        return {};
    const QRect area = characterArea(place);
    return {view().viewport()->mapToGlobal(area.topLeft()), area.size()};
}

int TextViewAccessible::offsetAtPoint(const QPoint& point) const {
    const QPoint place = view().viewport()->mapFromGlobal(point);
    if (!view().viewport()->rect().contains(place))
        return -1;
    const qint64 nearest = view().offsetAt(place);
    // A caret nearest to the far half of a character is after it. No character is at the end of the text.
    const std::optional<TextRange> before = units().unitBefore(nearest, QAccessible::CharBoundary);
    const bool isOverNearest = nearest < view().textStorage().length() && characterArea(nearest).contains(place);
    const bool isOverThatBefore = before && !isOverNearest && characterArea(before->location).contains(place);
    return accessibleOffset(isOverThatBefore ? before->location : nearest);
}

void TextViewAccessible::scrollToSubstring(int start, int end) {
    view().scrollRangeToVisible(stretch(start, end));
}

} // namespace quelm
