#pragma once

#include "Quelm/TreeEditor/TreeRowContents.h"

#include <QPainter>
#include <QRect>
#include <QRectF>

#include <cstdint>
#include <optional>

namespace quelm {

struct TreeRowStyle;

/// The parts of a row that tell the user something, from left to right.
enum class TreeRowPart : std::uint8_t { chevron, badge, label, duplicateMark, value };

/// How a row stands out among the others.
enum class TreeRowEmphasis : std::uint8_t { none, alternate, inactiveSelection, selection };

/// One row at its place in the view, laid out to be painted or to be asked what lies at a point. It is made for the
/// moment and refers to its style and contents, which must outlive it. Coordinates are the view's logical pixels.
class TreeRowView {
public:
    /// `area` is the row's stretch of the view; `contentX` is where a row of depth 0 would begin, to the left of the
    /// area when the view is scrolled.
    TreeRowView(const TreeRowStyle& style, const TreeRowContents& contents, const QRect& area, std::int64_t contentX);

    /// `chevronDegrees`: how far the chevron is turned at this moment; 90 when the row is expanded.
    void paint(QPainter& painter, TreeRowEmphasis emphasis, double chevronDegrees) const;

    /// Empty when the row has no such part, or no room for it.
    QRectF rect(TreeRowPart part) const;

    std::optional<TreeRowPart> partAt(const QPointF& point) const;

    /// Whether a click there turns the chevron: a target as high as the row and wider than the drawing.
    bool isOnChevron(const QPointF& point) const;

    /// Whether the row says less than the whole key or value.
    bool isShortened(TreeRowPart part) const;

private:
    void layOut(double x);
    void paintBackground(QPainter& painter, TreeRowEmphasis emphasis) const;
    void paintChevron(QPainter& painter, double degrees) const;
    void paintBadge(QPainter& painter) const;
    void paintLabel(QPainter& painter) const;
    void paintValue(QPainter& painter) const;

    const TreeRowStyle& style_;
    const TreeRowContents& contents_;
    QRect area_;
    QRectF chevron_;
    QRectF badge_;
    QRectF label_;
    QRectF duplicateMark_;
    QRectF value_;
};

} // namespace quelm
