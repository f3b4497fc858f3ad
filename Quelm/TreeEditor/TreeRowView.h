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

/// What a row looks like beyond its contents, at this moment.
struct TreeRowState {
    TreeRowEmphasis emphasis = TreeRowEmphasis::none;
    /// How far the chevron is turned; 90 when the row is expanded.
    double chevronDegrees = 0;
    bool isBadgeHovered = false;
    /// A menu is open for the row, whichever is selected.
    bool isOutlined = false;
};

/// A field that takes the place of the label or the value.
struct TreeRowField {
    TreeRowPart part;
    /// What it would like to have.
    double width;
    /// From its left edge to where its text begins, which is where that of the label or the value does.
    double inset;
};

/// One row at its place in the view, laid out to be painted or to be asked what lies at a point. It is made for the
/// moment and refers to its style and contents, which must outlive it. Coordinates are the view's logical pixels.
class TreeRowView {
public:
    /// `area` is the row's stretch of the view; `contentX` is where a row of depth 0 would begin, to the left of the
    /// area when the view is scrolled.
    TreeRowView(const TreeRowStyle& style, const TreeRowContents& contents, const QRect& area, std::int64_t contentX,
                std::optional<TreeRowField> field = std::nullopt);

    void paint(QPainter& painter, const TreeRowState& state) const;

    /// Empty when the row has no such part, or no room for it. The part that a field stands for is the field's stretch
    /// of the row.
    QRectF rect(TreeRowPart part) const;

    /// The line that the row's texts stand on.
    double baseline() const;

    std::optional<TreeRowPart> partAt(const QPointF& point) const;

    /// Whether a click there turns the chevron: a target as high as the row and wider than the drawing.
    bool isOnChevron(const QPointF& point) const;

    /// Whether the row says less than the whole key or value.
    bool isShortened(TreeRowPart part) const;

private:
    void layOut(double x);
    QRectF fieldStretch(double textStart, double right) const;
    bool isField(TreeRowPart part) const { return field_ && field_->part == part; }
    void paintBackground(QPainter& painter, TreeRowEmphasis emphasis) const;
    void paintOutline(QPainter& painter) const;
    void paintChevron(QPainter& painter, double degrees) const;
    void paintBadge(QPainter& painter, bool isHovered) const;
    QColor labelColor() const;
    void paintLabel(QPainter& painter) const;
    double quotationMarkWidth() const;
    void paintValue(QPainter& painter) const;

    const TreeRowStyle& style_;
    const TreeRowContents& contents_;
    QRect area_;
    std::optional<TreeRowField> field_;
    QRectF chevron_;
    QRectF badge_;
    QRectF label_;
    QRectF duplicateMark_;
    QRectF value_;
};

} // namespace quelm
