#include "Quelm/TreeEditor/TreeRowView.h"

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/Foundation/Symbols.h"
#include "Quelm/TreeEditor/KindPresentation.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

constexpr std::array allParts{TreeRowPart::chevron, TreeRowPart::badge, TreeRowPart::label, TreeRowPart::duplicateMark,
                              TreeRowPart::value};

/// How strongly the edge of a badge under the pointer is drawn in the colour of its text.
constexpr double hoverOpacity = 0.7;

/// Fractions of a pixel that a measured text may lack without being cut.
constexpr double tolerance = 0.5;

/// Places farther out than this are as good as out of sight, and exact in the painter's arithmetic.
constexpr std::int64_t farthest = 1 << 24;

QString elided(const QString& text, const TreeRowStyle::Face& face, double textWidth, double room) {
    return textWidth <= room + tolerance ? text : face.metrics.elidedText(text, Qt::ElideRight, room);
}

QColor translucent(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

/// The baseline that puts capitals in the middle of an area: where badges and symbols have theirs too.
double middleBaseline(const QRectF& area, const TreeRowStyle::Face& face) {
    return area.top() + std::round((area.height() + face.metrics.capHeight()) / 2);
}

} // namespace

TreeRowView::TreeRowView(const TreeRowStyle& style, const TreeRowContents& contents, const QRect& area,
                         std::int64_t contentX, std::optional<TreeRowField> field)
    : style_(style), contents_(contents), area_(area), field_(field) {
    const std::int64_t x = contentX + contents.depth * style.indentation;
    layOut(static_cast<double>(std::clamp(x, -farthest, farthest)));
}

void TreeRowView::layOut(double x) {
    const auto centred = [this](double left, double width, double height) {
        return QRectF(left, area_.top() + std::floor((area_.height() - height) / 2), width, height);
    };
    chevron_ = centred(x, style_.chevronWidth, style_.chevronHeight);
    badge_ = centred(chevron_.right() + style_.spacing, style_.badgeWidth, style_.badgeHeight);

    const double right = area_.right() + 1 - style_.contentInset;
    const double left = badge_.right() + style_.spacing + 1;
    const double markWidth = contents_.isDuplicateKey ? style_.markSize + style_.spacing : 0;
    const double room = std::max(0.0, right - left - markWidth - style_.valueSpacing);
    const double valueWidth = isField(TreeRowPart::value) ? field_->width : contents_.valueWidth;
    // A long key takes what the value leaves, or half the room.
    double labelWidth = std::min(contents_.labelWidth, std::max(room - valueWidth, room / 2));
    if (isField(TreeRowPart::value))
        labelWidth = std::clamp(room - style_.leastFieldWidth, 0.0, labelWidth);
    label_ =
        isField(TreeRowPart::label) ? fieldStretch(left, right) : QRectF(left, area_.top(), labelWidth, area_.height());

    if (contents_.isDuplicateKey)
        duplicateMark_ = centred(label_.right() + style_.spacing, style_.markSize, style_.markSize);
    const double end = label_.right() + markWidth + style_.valueSpacing;
    value_ = isField(TreeRowPart::value)
                 ? fieldStretch(end + quotationMarkWidth(), right)
                 : QRectF(end, area_.top(), std::clamp(right - end, 0.0, contents_.valueWidth), area_.height());
}

/// As wide as the field would like to be, but no wider than there is room for; with too little room it begins farther
/// to the left.
QRectF TreeRowView::fieldStretch(double textStart, double right) const {
    const double left = textStart - field_->inset;
    const double width = std::min(field_->width, std::max(right - left, double(style_.leastFieldWidth)));
    const double start = std::max(std::min(left, right - width), area_.left() + double(style_.backgroundInset));
    return {std::min(start, left), double(area_.top()), width, double(area_.height())};
}

double TreeRowView::baseline() const {
    return middleBaseline(area_, style_.key);
}

double TreeRowView::quotationMarkWidth() const {
    return contents_.kind == NodeKind::string ? style_.value.metrics.horizontalAdvance(u'"') : 0;
}

void TreeRowView::paint(QPainter& painter, const TreeRowState& state) const {
    paintBackground(painter, state.emphasis);
    if (state.isOutlined)
        paintOutline(painter);
    if (chevron_.left() > area_.right() || value_.right() < area_.left())
        return;
    // Marks piled up on a character must not reach the rows above and below.
    painter.setClipRect(area_);
    if (isContainer(contents_.kind))
        paintChevron(painter, state.chevronDegrees);
    paintBadge(painter, state.isBadgeHovered);
    if (!isField(TreeRowPart::label))
        paintLabel(painter);
    if (contents_.isDuplicateKey)
        paintSymbol(painter, QStringLiteral("exclamationmark.triangle.fill"), duplicateMark_, style_.warning);
    if (!isField(TreeRowPart::value))
        paintValue(painter);
    painter.setClipping(false);
}

void TreeRowView::paintBackground(QPainter& painter, TreeRowEmphasis emphasis) const {
    if (emphasis == TreeRowEmphasis::none)
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(emphasis == TreeRowEmphasis::selection           ? style_.selection
                     : emphasis == TreeRowEmphasis::inactiveSelection ? style_.inactiveSelection
                                                                      : style_.alternateRow);
    const QRect background = area_.adjusted(style_.backgroundInset, 0, -style_.backgroundInset, 0);
    painter.drawRoundedRect(background, style_.backgroundRadius, style_.backgroundRadius);
}

void TreeRowView::paintOutline(QPainter& painter) const {
    const double width = std::max(1.5, style_.backgroundRadius * 0.3);
    const double inset = width / 2;
    painter.setPen(QPen(style_.accent, width));
    painter.setBrush(Qt::NoBrush);
    const QRectF outline =
        QRectF(area_).adjusted(style_.backgroundInset + inset, inset, -style_.backgroundInset - inset, -inset);
    painter.drawRoundedRect(outline, style_.backgroundRadius - inset, style_.backgroundRadius - inset);
}

void TreeRowView::paintChevron(QPainter& painter, double degrees) const {
    const double side = std::round(style_.chevronWidth * 0.92);
    const QRectF area(chevron_.center() - QPointF(side, side) / 2, QSizeF(side, side));
    paintSymbol(painter, QStringLiteral("chevron.right"), area, style_.secondaryText, degrees);
}

void TreeRowView::paintBadge(QPainter& painter, bool isHovered) const {
    const QColor color = style_.kindColor(contents_.kind);
    painter.setPen(Qt::NoPen);
    painter.setBrush(translucent(color, badgeOpacity));
    painter.drawRoundedRect(badge_, style_.badgeRadius, style_.badgeRadius);
    if (isHovered) {
        // The tint stays as it is, since the text must be read on it: what can be clicked gets an edge.
        painter.setPen(QPen(translucent(color, hoverOpacity), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(badge_.adjusted(0.5, 0.5, -0.5, -0.5), style_.badgeRadius - 0.5,
                                style_.badgeRadius - 0.5);
    }
    painter.setPen(color);
    painter.setFont(style_.badge.font);
    const QString text = kindBadge(contents_.kind);
    const double width = style_.badge.metrics.horizontalAdvance(text);
    painter.drawText(QPointF(badge_.center().x() - width / 2, middleBaseline(badge_, style_.badge)), text);
}

QColor TreeRowView::labelColor() const {
    switch (contents_.labelKind) {
    case TreeRowContents::LabelKind::key:
        return style_.text;
    case TreeRowContents::LabelKind::emptyKey:
        return style_.tertiaryText;
    default:
        return style_.secondaryText;
    }
}

void TreeRowView::paintLabel(QPainter& painter) const {
    const TreeRowStyle::Face& face = contents_.labelFace(style_);
    painter.setFont(face.font);
    painter.setPen(labelColor());
    painter.drawText(QPointF(label_.left(), baseline()),
                     elided(contents_.label, face, contents_.labelWidth, label_.width()));
}

void TreeRowView::paintValue(QPainter& painter) const {
    if (value_.isEmpty())
        return;
    const QPointF origin(value_.left(), baseline());
    if (isContainer(contents_.kind)) {
        painter.setFont(style_.count.font);
        painter.setPen(style_.secondaryText);
        painter.drawText(origin, elided(contents_.value, style_.count, contents_.valueWidth, value_.width()));
        return;
    }
    painter.setFont(style_.value.font);
    painter.setPen(style_.kindColor(contents_.kind));
    const double marks = 2 * quotationMarkWidth();
    QString text = elided(contents_.value, style_.value, contents_.valueWidth - marks, value_.width() - marks);
    if (contents_.kind == NodeKind::string)
        text = u'"' + text + u'"';
    painter.drawText(origin, text);
}

QRectF TreeRowView::rect(TreeRowPart part) const {
    switch (part) {
    case TreeRowPart::chevron:
        return isContainer(contents_.kind) ? chevron_ : QRectF();
    case TreeRowPart::badge:
        return badge_;
    case TreeRowPart::label:
        return label_;
    case TreeRowPart::duplicateMark:
        return duplicateMark_;
    case TreeRowPart::value:
        break;
    }
    return value_;
}

std::optional<TreeRowPart> TreeRowView::partAt(const QPointF& point) const {
    const auto* found = std::ranges::find_if(allParts, [&](TreeRowPart part) { return rect(part).contains(point); });
    return found == allParts.end() ? std::nullopt : std::optional(*found);
}

bool TreeRowView::isOnChevron(const QPointF& point) const {
    if (!isContainer(contents_.kind))
        return false;
    const double margin = style_.spacing / 2.0;
    return QRectF(chevron_.left() - margin, area_.top(), chevron_.width() + 2 * margin, area_.height()).contains(point);
}

bool TreeRowView::isShortened(TreeRowPart part) const {
    if (part == TreeRowPart::label)
        return contents_.isLabelCut || contents_.labelWidth > label_.width() + tolerance;
    if (part == TreeRowPart::value)
        return contents_.isValueCut || contents_.valueWidth > value_.width() + tolerance;
    return false;
}

} // namespace quelm
