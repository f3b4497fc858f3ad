#include "Quelm/TreeEditor/ChevronAnimation.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

constexpr NodeID node{5};
constexpr NodeID other{6};

TEST(ChevronAnimationTests, ChevronsRestToTheRightOrDown) {
    const ChevronAnimation animation;
    EXPECT_EQ(animation.degrees(node, false), 0);
    EXPECT_EQ(animation.degrees(node, true), 90);
}

TEST(ChevronAnimationTests, ATurnStartsWhereTheChevronWasAndEndsWhereItRests) {
    ChevronAnimation animation;
    QSignalSpy frames(&animation, &ChevronAnimation::valueChanged);
    animation.turn(node, true, 30);
    EXPECT_EQ(animation.degrees(node, true), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return animation.state() == ChevronAnimation::Stopped; }));
    EXPECT_EQ(animation.degrees(node, true), 90);
    EXPECT_GT(frames.count(), 1);
}

TEST(ChevronAnimationTests, OtherChevronsStandStill) {
    ChevronAnimation animation;
    animation.turn(node, true, 1000);
    EXPECT_EQ(animation.degrees(other, true), 90);
    EXPECT_EQ(animation.degrees(other, false), 0);
}

TEST(ChevronAnimationTests, ATurnThatIsTakenBackGoesBackFromWhereItIs) {
    ChevronAnimation animation;
    animation.turn(node, true, 1000);
    animation.setCurrentTime(500);
    const double half = animation.degrees(node, true);
    EXPECT_GT(half, 0);
    EXPECT_LT(half, 90);
    animation.turn(node, false, 1000);
    EXPECT_EQ(animation.degrees(node, false), half);
}

TEST(ChevronAnimationTests, WithoutAnimationsTheTurnIsDoneAtOnce) {
    ChevronAnimation animation;
    animation.turn(node, true, 0);
    EXPECT_EQ(animation.state(), ChevronAnimation::Stopped);
    EXPECT_EQ(animation.degrees(node, true), 90);
}

} // namespace
} // namespace quelm
