#include "Quelm/Foundation/ScrollAxis.h"

#include <QScrollBar>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quelm {
namespace {

constexpr std::int64_t trillion = 1'000'000'000'000;

class ScrollAxisTests : public testing::Test {
protected:
    QScrollBar bar{Qt::Vertical};
    ScrollAxis axis{bar};
};

TEST_F(ScrollAxisTests, ShortContentHasNowhereToGo) {
    axis.setExtent(100, 200, 10);
    axis.setPosition(50);
    EXPECT_EQ(axis.position(), 0);
    EXPECT_EQ(axis.maximum(), 0);
    EXPECT_EQ(bar.maximum(), 0);
}

TEST_F(ScrollAxisTests, AValueOfTheBarIsAPixelWhileTheContentIsShort) {
    axis.setExtent(1000, 200, 10);
    EXPECT_EQ(bar.maximum(), 800);
    EXPECT_EQ(bar.pageStep(), 200);
    EXPECT_EQ(bar.singleStep(), 10);
    bar.setValue(123);
    EXPECT_EQ(axis.position(), 123);
    axis.setPosition(321);
    EXPECT_EQ(bar.value(), 321);
}

TEST_F(ScrollAxisTests, PositionsStayWithinTheContent) {
    axis.setExtent(1000, 200, 10);
    axis.setPosition(5000);
    EXPECT_EQ(axis.position(), 800);
    axis.scrollBy(-10'000);
    EXPECT_EQ(axis.position(), 0);
}

TEST_F(ScrollAxisTests, ShrinkingContentTakesThePositionAlong) {
    axis.setExtent(1000, 200, 10);
    axis.setPosition(800);
    QSignalSpy changes(&axis, &ScrollAxis::positionChanged);
    axis.setExtent(500, 200, 10);
    EXPECT_EQ(axis.position(), 300);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ScrollAxisTests, EveryPixelOfEndlessContentCanBeReached) {
    axis.setExtent(trillion, 500, 25);
    for (const std::int64_t position : {std::int64_t{1}, trillion / 3, trillion - 501, trillion - 500}) {
        axis.setPosition(position);
        EXPECT_EQ(axis.position(), position);
    }
    EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(ScrollAxisTests, TheEndsOfTheBarAreTheEndsOfEndlessContent) {
    axis.setExtent(trillion, 500, 25);
    bar.setValue(bar.maximum());
    EXPECT_EQ(axis.position(), trillion - 500);
    bar.setValue(0);
    EXPECT_EQ(axis.position(), 0);
}

TEST_F(ScrollAxisTests, StepsAndPagesAreExactWhateverTheLength) {
    axis.setExtent(trillion, 500, 25);
    axis.setPosition(trillion / 2);
    bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(axis.position(), trillion / 2 + 25);
    bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(axis.position(), trillion / 2 + 25 - 500);
    bar.triggerAction(QAbstractSlider::SliderToMaximum);
    EXPECT_EQ(axis.position(), trillion - 500);
}

TEST_F(ScrollAxisTests, EachChangeIsAnnouncedOnceAndOnlyThen) {
    axis.setExtent(1000, 200, 10);
    QSignalSpy changes(&axis, &ScrollAxis::positionChanged);
    axis.setPosition(100);
    axis.setPosition(100);
    EXPECT_EQ(changes.count(), 1);
    bar.setValue(200);
    EXPECT_EQ(changes.count(), 2);
    bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(ScrollAxisTests, RevealingGoesNoFartherThanNeeded) {
    axis.setExtent(1000, 200, 10);
    axis.reveal(50, 20);
    EXPECT_EQ(axis.position(), 0);
    axis.reveal(190, 20);
    EXPECT_EQ(axis.position(), 10);
    axis.reveal(5, 20);
    EXPECT_EQ(axis.position(), 5);
    axis.reveal(400, 500);
    EXPECT_EQ(axis.position(), 400);
}

} // namespace
} // namespace quelm
