#include "Quelm/Foundation/Clock.h"
#include "Tests/Quelm/Support/FakeClock.h"

#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quelm {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class ClockTests : public testing::Test {
protected:
    std::function<void()> note(std::string event) {
        return [this, event = std::move(event)] { events.push_back(event); };
    }

    std::vector<std::string> events;
};

TEST_F(ClockTests, TheSystemMakesCallsInTheOrderOfTheirTimes) {
    Clock& clock = Clock::system();
    const DelayedCall last = clock.callAfter(30ms, note("last"));
    const DelayedCall first = clock.callAfter(0ms, note("first"));
    const DelayedCall second = clock.callAfter(10ms, note("second"));
    EXPECT_THAT(events, ElementsAre());
    EXPECT_TRUE(QTest::qWaitFor([this] { return events.size() == 3; }));
    EXPECT_THAT(events, ElementsAre("first", "second", "last"));
}

TEST_F(ClockTests, TheSystemDoesNotMakeACallThatWasLetGoOf) {
    Clock& clock = Clock::system();
    DelayedCall cancelled = clock.callAfter(0ms, note("cancelled"));
    DelayedCall replaced = clock.callAfter(0ms, note("replaced"));
    const DelayedCall last = clock.callAfter(20ms, note("last"));
    cancelled.reset();
    replaced = clock.callAfter(0ms, note("replacement"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return events.size() == 2; }));
    EXPECT_THAT(events, ElementsAre("replacement", "last"));
}

TEST_F(ClockTests, TheSystemMakesACallOnceAndTheCallMayLetGoOfItself) {
    Clock& clock = Clock::system();
    const auto note = this->note("call");
    DelayedCall call;
    call = clock.callAfter(0ms, [&] {
        call.reset();
        note();
    });
    const DelayedCall later = clock.callAfter(20ms, this->note("later"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return events.size() == 2; }));
    EXPECT_THAT(events, ElementsAre("call", "later"));
    EXPECT_EQ(call, nullptr);
}

TEST_F(ClockTests, AFakeClockMakesTheCallsThatFallDue) {
    FakeClock clock;
    const DelayedCall second = clock.callAfter(20ms, note("second"));
    const DelayedCall first = clock.callAfter(10ms, note("first"));
    const DelayedCall alsoSecond = clock.callAfter(20ms, note("also second"));
    EXPECT_EQ(clock.pendingCount(), 3U);
    clock.advance(19ms);
    EXPECT_THAT(events, ElementsAre("first"));
    clock.advance(1ms);
    EXPECT_THAT(events, ElementsAre("first", "second", "also second"));
    clock.advance(100ms);
    EXPECT_EQ(events.size(), 3U);
    EXPECT_EQ(clock.pendingCount(), 0U);
}

TEST_F(ClockTests, AFakeClockForgetsACallThatWasLetGoOf) {
    FakeClock clock;
    DelayedCall call = clock.callAfter(10ms, note("call"));
    call.reset();
    EXPECT_EQ(clock.pendingCount(), 0U);
    clock.advance(20ms);
    EXPECT_THAT(events, ElementsAre());
}

TEST_F(ClockTests, AFakeClockMakesTheCallsThatItsCallsAskFor) {
    FakeClock clock;
    DelayedCall inner;
    const DelayedCall outer = clock.callAfter(10ms, [&] { inner = clock.callAfter(10ms, note("inner")); });
    clock.advance(19ms);
    EXPECT_THAT(events, ElementsAre());
    clock.advance(1ms);
    EXPECT_THAT(events, ElementsAre("inner"));
}

} // namespace
} // namespace quelm
