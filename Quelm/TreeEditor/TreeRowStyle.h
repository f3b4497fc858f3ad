#pragma once

#include "JSONCore/NodeKind.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPalette>

#include <array>

namespace quelm {

/// The look of the tree's rows under one palette and font scale: fonts with their metrics, colours, and lengths in
/// logical pixels. All rows are of one height. Made anew when either changes.
struct TreeRowStyle {
    /// A font with the metrics that measure it.
    struct Face {
        explicit Face(const QFont& face) : font(face), metrics(face) {}
        QFont font;
        QFontMetricsF metrics;
    };

    explicit TreeRowStyle(const QPalette& palette);

    QColor kindColor(NodeKind kind) const { return kindColors[static_cast<std::size_t>(kind)]; }

    Face key;
    Face index;
    /// What stands for a name: of the top-level value, of a member whose key is empty.
    Face emptyKey;
    Face count;
    Face value;
    Face badge;

    QColor text;
    QColor secondaryText;
    QColor tertiaryText;
    QColor accent;
    QColor warning;
    QColor alternateRow;
    QColor selection;
    QColor inactiveSelection;
    std::array<QColor, allNodeKinds.size()> kindColors;

    int rowHeight;
    /// Above the first row and below the last one.
    int verticalMargin;
    /// What one level of depth moves a row to the right.
    int indentation;
    /// From the edge of the view to the background of a row.
    int backgroundInset;
    int backgroundRadius;
    /// From the edges of the view to what a row of depth 0 shows.
    int contentInset;
    int chevronWidth;
    int chevronHeight;
    int badgeWidth;
    int badgeHeight;
    int badgeRadius;
    int markSize;
    int spacing;
    /// Between what names a row and its value.
    int valueSpacing;
    int leastFieldWidth;
    /// The least room that a row should find to the right of its indentation; deeper rows are scrolled to.
    int leastContentWidth;
};

} // namespace quelm
