#include "Quelm/Foundation/ScrollAxis.h"

#include <QScrollBar>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quelm {
namespace {

constexpr std::int64_t trillion = 1'000'000'000'000;

class ScrollAxisTests : public testing::Test {
protected:
    QScrollBar bar_{Qt::Vertical};
    ScrollAxis axis_{bar_};
};

TEST_F(ScrollAxisTests, ShortContentHasNowhereToGo) {
    axis_.setExtent(100, 200, 10);
    axis_.setPosition(50);
    EXPECT_EQ(axis_.position(), 0);
    EXPECT_EQ(axis_.maximum(), 0);
    EXPECT_EQ(bar_.maximum(), 0);
}

TEST_F(ScrollAxisTests, AValueOfTheBarIsAPixelWhileTheContentIsShort) {
    axis_.setExtent(1000, 200, 10);
    EXPECT_EQ(bar_.maximum(), 800);
    EXPECT_EQ(bar_.pageStep(), 200);
    EXPECT_EQ(bar_.singleStep(), 10);
    bar_.setValue(123);
    EXPECT_EQ(axis_.position(), 123);
    axis_.setPosition(321);
    EXPECT_EQ(bar_.value(), 321);
}

TEST_F(ScrollAxisTests, PositionsStayWithinTheContent) {
    axis_.setExtent(1000, 200, 10);
    axis_.setPosition(5000);
    EXPECT_EQ(axis_.position(), 800);
    axis_.scrollBy(-10'000);
    EXPECT_EQ(axis_.position(), 0);
}

TEST_F(ScrollAxisTests, ShrinkingContentTakesThePositionAlong) {
    axis_.setExtent(1000, 200, 10);
    axis_.setPosition(800);
    QSignalSpy changes(&axis_, &ScrollAxis::positionChanged);
    axis_.setExtent(500, 200, 10);
    EXPECT_EQ(axis_.position(), 300);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ScrollAxisTests, EveryPixelOfEndlessContentCanBeReached) {
    axis_.setExtent(trillion, 500, 25);
    for (const std::int64_t position : {std::int64_t{1}, trillion / 3, trillion - 501, trillion - 500}) {
        axis_.setPosition(position);
        EXPECT_EQ(axis_.position(), position);
    }
    EXPECT_EQ(bar_.value(), bar_.maximum());
}

TEST_F(ScrollAxisTests, TheEndsOfTheBarAreTheEndsOfEndlessContent) {
    axis_.setExtent(trillion, 500, 25);
    bar_.setValue(bar_.maximum());
    EXPECT_EQ(axis_.position(), trillion - 500);
    bar_.setValue(0);
    EXPECT_EQ(axis_.position(), 0);
}

TEST_F(ScrollAxisTests, StepsAndPagesAreExactWhateverTheLength) {
    axis_.setExtent(trillion, 500, 25);
    axis_.setPosition(trillion / 2);
    bar_.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(axis_.position(), trillion / 2 + 25);
    bar_.triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(axis_.position(), trillion / 2 + 25 - 500);
    bar_.triggerAction(QAbstractSlider::SliderToMaximum);
    EXPECT_EQ(axis_.position(), trillion - 500);
}

TEST_F(ScrollAxisTests, EachChangeIsAnnouncedOnceAndOnlyThen) {
    axis_.setExtent(1000, 200, 10);
    QSignalSpy changes(&axis_, &ScrollAxis::positionChanged);
    axis_.setPosition(100);
    axis_.setPosition(100);
    EXPECT_EQ(changes.count(), 1);
    bar_.setValue(200);
    EXPECT_EQ(changes.count(), 2);
    bar_.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(ScrollAxisTests, RevealingGoesNoFartherThanNeeded) {
    axis_.setExtent(1000, 200, 10);
    axis_.reveal(50, 20);
    EXPECT_EQ(axis_.position(), 0);
    axis_.reveal(190, 20);
    EXPECT_EQ(axis_.position(), 10);
    axis_.reveal(5, 20);
    EXPECT_EQ(axis_.position(), 5);
    axis_.reveal(400, 500);
    EXPECT_EQ(axis_.position(), 400);
}

} // namespace
} // namespace quelm
