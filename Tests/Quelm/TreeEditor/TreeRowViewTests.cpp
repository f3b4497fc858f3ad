#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/TreeRowStyle.h"
#include "Quelm/TreeEditor/TreeRowView.h"
#include "Tests/Quelm/Support/Rows.h"

#include <QGuiApplication>
#include <QImage>

#include <gtest/gtest.h>
#include <memory>

namespace quelm {
namespace {

constexpr int width = 600;

class TreeRowViewTests : public testing::Test {
protected:
    TreeRowView view(const TreeRow& row, int viewWidth = width, std::optional<TreeRowField> field = std::nullopt) {
        rowContents = std::make_unique<TreeRowContents>(row, style);
        return TreeRowView(style, *rowContents, QRect(0, 0, viewWidth, style.rowHeight), 0, field);
    }

    QImage painted(const TreeRow& row, const TreeRowState& state, std::optional<TreeRowField> field = std::nullopt) {
        QImage image(width, style.rowHeight, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        view(row, width, field).paint(painter, state);
        return image;
    }

    QImage painted(const TreeRow& row, TreeRowEmphasis emphasis = TreeRowEmphasis::none) {
        return painted(row, {.emphasis = emphasis, .chevronDegrees = row.isExpanded ? 90.0 : 0.0});
    }

    static int firstPaintedColumn(const QImage& image) {
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixel(x, y) != qRgb(255, 255, 255))
                    return x;
        return image.width();
    }

    static TreeRow number(std::int64_t depth) {
        TreeRow row = scalarRow(TreeRow::Label::key("clave"), NodeKind::number, "12");
        row.depth = depth;
        return row;
    }

    TreeRowStyle style{QGuiApplication::palette()};
    std::unique_ptr<TreeRowContents> rowContents;
};

TEST_F(TreeRowViewTests, ARowOfDepthThreeStandsFortyEightPointsToTheRightOfOneOfDepthZero) {
    for (const TreeRowPart part : {TreeRowPart::badge, TreeRowPart::label, TreeRowPart::value}) {
        const double shallow = view(number(0)).rect(part).left();
        const double deep = view(number(3)).rect(part).left();
        EXPECT_EQ(deep - shallow, 3 * scaledPixels(16));
    }
    EXPECT_EQ(firstPaintedColumn(painted(number(3))) - firstPaintedColumn(painted(number(0))), 3 * scaledPixels(16));
}

TEST_F(TreeRowViewTests, PartsFollowEachOtherFromLeftToRight) {
    TreeRow row = containerRow(TreeRow::Label::key("a"), NodeKind::object, 2);
    row.isDuplicateKey = true;
    const TreeRowView view = this->view(row);
    EXPECT_LT(view.rect(TreeRowPart::chevron).right(), view.rect(TreeRowPart::badge).left());
    EXPECT_LT(view.rect(TreeRowPart::badge).right(), view.rect(TreeRowPart::label).left());
    EXPECT_LT(view.rect(TreeRowPart::label).right(), view.rect(TreeRowPart::duplicateMark).left());
    EXPECT_LT(view.rect(TreeRowPart::duplicateMark).right(), view.rect(TreeRowPart::value).left());
}

TEST_F(TreeRowViewTests, BadgesLineUpWhetherThereIsAChevronOrNot) {
    const TreeRow container = containerRow(TreeRow::Label::index(0), NodeKind::array);
    const TreeRow scalar = scalarRow(TreeRow::Label::index(1), NodeKind::null, "null");
    EXPECT_EQ(view(container).rect(TreeRowPart::badge), view(scalar).rect(TreeRowPart::badge));
    EXPECT_FALSE(view(container).rect(TreeRowPart::chevron).isEmpty());
    EXPECT_TRUE(view(scalar).rect(TreeRowPart::chevron).isEmpty());
}

TEST_F(TreeRowViewTests, OnlyContainersHaveAChevronToClick) {
    const QPointF place =
        view(containerRow(TreeRow::Label::root(), NodeKind::array)).rect(TreeRowPart::chevron).center();
    EXPECT_TRUE(view(containerRow(TreeRow::Label::root(), NodeKind::array)).isOnChevron(place));
    EXPECT_TRUE(view(containerRow(TreeRow::Label::root(), NodeKind::array)).isOnChevron(QPointF(place.x(), 1)));
    EXPECT_FALSE(
        view(containerRow(TreeRow::Label::root(), NodeKind::array)).isOnChevron(place + QPointF(style.badgeWidth, 0)));
    EXPECT_FALSE(view(number(0)).isOnChevron(place));
}

TEST_F(TreeRowViewTests, TheDuplicateMarkIsThereForDuplicatesOnly) {
    TreeRow row = number(0);
    EXPECT_TRUE(view(row).rect(TreeRowPart::duplicateMark).isEmpty());
    const QImage unmarked = painted(row);
    row.isDuplicateKey = true;
    const QRectF mark = view(row).rect(TreeRowPart::duplicateMark);
    EXPECT_FALSE(mark.isEmpty());
    EXPECT_NE(painted(row).copy(mark.toRect()), unmarked.copy(mark.toRect()));
}

TEST_F(TreeRowViewTests, WhatFitsIsNotShortened) {
    const TreeRowView view = this->view(number(0));
    EXPECT_FALSE(view.isShortened(TreeRowPart::label));
    EXPECT_FALSE(view.isShortened(TreeRowPart::value));
}

TEST_F(TreeRowViewTests, ALongValueEndsBeforeTheEdgeAndLeavesTheKeyWhole) {
    const TreeRow row = scalarRow(TreeRow::Label::key("clave"), NodeKind::string, std::string(200, 'x'));
    const TreeRowView view = this->view(row);
    EXPECT_TRUE(view.isShortened(TreeRowPart::value));
    EXPECT_FALSE(view.isShortened(TreeRowPart::label));
    EXPECT_LE(view.rect(TreeRowPart::value).right(), width - style.backgroundInset);
}

TEST_F(TreeRowViewTests, ALongKeyLeavesAShortValueWhole) {
    const TreeRow row = scalarRow(TreeRow::Label::key(std::string(300, 'k')), NodeKind::number, "12");
    const TreeRowView view = this->view(row);
    EXPECT_TRUE(view.isShortened(TreeRowPart::label));
    EXPECT_FALSE(view.isShortened(TreeRowPart::value));
}

TEST_F(TreeRowViewTests, ALongKeyAndALongValueShareTheRoom) {
    const TreeRow row = scalarRow(TreeRow::Label::key(std::string(300, 'k')), NodeKind::string, std::string(200, 'x'));
    const TreeRowView view = this->view(row);
    EXPECT_TRUE(view.isShortened(TreeRowPart::label));
    EXPECT_TRUE(view.isShortened(TreeRowPart::value));
    EXPECT_NEAR(view.rect(TreeRowPart::label).width(), view.rect(TreeRowPart::value).width(), 2);
}

TEST_F(TreeRowViewTests, AViewTooNarrowForAnythingIsStillPainted) {
    QImage image(40, style.rowHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const TreeRowView narrow = view(number(2), 40);
    narrow.paint(painter, {.emphasis = TreeRowEmphasis::selection});
    EXPECT_EQ(narrow.rect(TreeRowPart::value).width(), 0);
}

TEST_F(TreeRowViewTests, TheChevronOfAnExpandedRowIsTurned) {
    TreeRow row = containerRow(TreeRow::Label::root(), NodeKind::object, 1);
    const QImage collapsed = painted(row);
    row.isExpanded = true;
    EXPECT_NE(painted(row), collapsed);
}

TEST_F(TreeRowViewTests, EveryEmphasisLooksDifferent) {
    std::vector<QImage> images;
    for (const TreeRowEmphasis emphasis : {TreeRowEmphasis::none, TreeRowEmphasis::alternate,
                                           TreeRowEmphasis::inactiveSelection, TreeRowEmphasis::selection})
        images.push_back(painted(number(0), emphasis));
    for (std::size_t left = 0; left < images.size(); ++left)
        for (std::size_t right = left + 1; right < images.size(); ++right)
            EXPECT_NE(images[left], images[right]) << left << " and " << right;
}

TEST_F(TreeRowViewTests, TheBackgroundOfASelectionIsInset) {
    const QImage image = painted(number(0), TreeRowEmphasis::selection);
    const int middle = style.rowHeight / 2;
    EXPECT_EQ(image.pixel(style.backgroundInset - 1, middle), qRgb(255, 255, 255));
    EXPECT_NE(image.pixel(style.backgroundInset + 1, middle), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(style.backgroundInset, 0), qRgb(255, 255, 255)) << "its corners are round";
}

TEST_F(TreeRowViewTests, AHoveredBadgeGetsAnEdgeAndNothingElseChanges) {
    QImage plain = painted(number(0));
    QImage hovered = painted(number(0), TreeRowState{.isBadgeHovered = true});
    const QRect badge = view(number(0)).rect(TreeRowPart::badge).toAlignedRect();
    EXPECT_NE(hovered.copy(badge), plain.copy(badge));
    for (QImage* image : {&plain, &hovered})
        QPainter(image).fillRect(badge, Qt::white);
    EXPECT_EQ(hovered, plain);
}

TEST_F(TreeRowViewTests, AnOutlineStaysWithinTheRowsBackground) {
    const QImage image = painted(number(0), TreeRowState{.isOutlined = true});
    const int middle = style.rowHeight / 2;
    EXPECT_EQ(image.pixel(style.backgroundInset - 1, middle), qRgb(255, 255, 255));
    EXPECT_NE(image.pixel(style.backgroundInset, middle), qRgb(255, 255, 255));
    EXPECT_NE(image.pixel(width / 2, 0), qRgb(255, 255, 255));
    EXPECT_NE(image.pixel(width / 2, style.rowHeight - 1), qRgb(255, 255, 255));
}

// With a field.

TEST_F(TreeRowViewTests, AFieldTakesThePlaceOfWhatItStandsFor) {
    const QRectF label = view(number(0)).rect(TreeRowPart::label);
    const TreeRowField field{.part = TreeRowPart::label, .width = 200, .inset = 6};
    const TreeRowView row = view(number(0), width, field);
    EXPECT_EQ(row.rect(TreeRowPart::label).left(), label.left() - 6);
    EXPECT_EQ(row.rect(TreeRowPart::label).width(), 200);
    EXPECT_GT(row.rect(TreeRowPart::value).left(), row.rect(TreeRowPart::label).right());
    const QImage image = painted(number(0), TreeRowState{}, field).copy(label.toAlignedRect());
    QImage blank = image;
    blank.fill(Qt::white);
    EXPECT_EQ(image, blank) << "what is under the field is not painted";
}

TEST_F(TreeRowViewTests, AFieldIsNoWiderThanTheRoomAndNoNarrowerThanItsLeastWidth) {
    const TreeRow row = scalarRow(TreeRow::Label::key(std::string(300, 'k')), NodeKind::number, "1");
    for (const int viewWidth : {600, 400, 300, 250}) {
        const QRectF field = view(row, viewWidth, TreeRowField{.part = TreeRowPart::value, .width = 520, .inset = 6})
                                 .rect(TreeRowPart::value);
        EXPECT_GE(field.width(), style.leastFieldWidth) << viewWidth;
        EXPECT_GE(field.left(), 0) << viewWidth;
        EXPECT_LE(field.right(), viewWidth) << viewWidth;
    }
}

TEST_F(TreeRowViewTests, AFieldOfAStringBeginsBehindTheQuotationMark) {
    const TreeRow row = scalarRow(TreeRow::Label::index(0), NodeKind::string, "x");
    const double value = view(row).rect(TreeRowPart::value).left();
    const double mark = style.value.metrics.horizontalAdvance(u'"');
    const QRectF field =
        view(row, width, TreeRowField{.part = TreeRowPart::value, .width = 150, .inset = 0}).rect(TreeRowPart::value);
    EXPECT_DOUBLE_EQ(field.left(), value + mark);
}

TEST_F(TreeRowViewTests, ARowIsNeverPaintedOutsideItsStretch) {
    QImage image(width, 3 * style.rowHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    std::string piled = "a";
    for (int mark = 0; mark < 60; ++mark)
        piled += "\u0301\u0323";
    const TreeRow row = scalarRow(TreeRow::Label::key(piled), NodeKind::string, piled);
    rowContents = std::make_unique<TreeRowContents>(row, style);
    TreeRowView(style, *rowContents, QRect(0, style.rowHeight, width, style.rowHeight), 0)
        .paint(painter, {.emphasis = TreeRowEmphasis::selection});
    painter.end();
    QImage blank(width, style.rowHeight, QImage::Format_RGB32);
    blank.fill(Qt::white);
    EXPECT_EQ(image.copy(0, 0, width, style.rowHeight), blank);
    EXPECT_EQ(image.copy(0, 2 * style.rowHeight, width, style.rowHeight), blank);
}

} // namespace
} // namespace quelm
