#include "Tests/Quelm/Documents/TextValidatorTest.h"

#include <QCoreApplication>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using namespace std::chrono_literals;
using State = TextValidator::State;
using testing::ElementsAre;

class TextValidatorRequestsTests : public TextValidatorTest {};

TEST_F(TextValidatorRequestsTests, AdoptingAStateCancelsWhatWaitsOrRuns) {
    bool isAsked = false;
    validator->schedule(300ms, [&] {
        isAsked = true;
        return rope("[]");
    });
    validator->adopt(State::valid(7));
    EXPECT_FALSE(validator->isPending());
    EXPECT_EQ(clock.pendingCount(), 0U);
    clock.advance(300ms);
    EXPECT_FALSE(isAsked);
    EXPECT_EQ(validator->state(), State::valid(7));
    EXPECT_EQ(announcements(), 1);

    useHeldParser(true);
    validate("[]");
    ASSERT_TRUE(parser->awaitBegun(1));
    validator->adopt(State::valid(8));
    EXPECT_FALSE(validator->isPending());
    ASSERT_TRUE(parser->awaitEnded(1));
    EXPECT_EQ(parser->stoppedCount(), 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(validator->state(), State::valid(8));
}

TEST_F(TextValidatorRequestsTests, AProviderMayAskForAnotherValidation) {
    useHeldParser(true);
    parser->release(1000);
    validator->schedule(0ms, [this] {
        validator->schedule(10ms, [] { return rope("[1,2]"); });
        return rope("[1]");
    });
    clock.advance(0ms);
    EXPECT_TRUE(validator->isPending());
    clock.advance(10ms);
    ASSERT_TRUE(awaitResult());
    EXPECT_THAT(parser->texts(), ElementsAre("[1,2]"));
}

TEST_F(TextValidatorRequestsTests, AProviderMayAdoptAState) {
    useHeldParser(true);
    validator->schedule(0ms, [this] {
        validator->adopt(State::valid(9));
        return rope("[1]");
    });
    clock.advance(0ms);
    EXPECT_FALSE(validator->isPending());
    EXPECT_EQ(validator->state(), State::valid(9));
    EXPECT_THAT(parser->texts(), ElementsAre());
}

TEST_F(TextValidatorRequestsTests, AProviderMayDestroyTheValidator) {
    bool isAsked = false;
    validator->schedule(0ms, [&] {
        validator.reset();
        isAsked = true;
        return rope("[1]");
    });
    clock.advance(0ms);
    EXPECT_TRUE(isAsked);
    EXPECT_EQ(clock.pendingCount(), 0U);
}

TEST_F(TextValidatorRequestsTests, DestroyingItStopsTheParseWithoutWaitingForIt) {
    useHeldParser(false);
    validate("[1]");
    ASSERT_TRUE(parser->awaitBegun(1));
    validator.reset();
    parser->release(1);
    ASSERT_TRUE(parser->awaitEnded(1));
    EXPECT_EQ(parser->stoppedCount(), 1);
    pool().waitForDone();
    QCoreApplication::processEvents();
}

TEST_F(TextValidatorRequestsTests, DestroyingItCancelsTheRequestThatWaits) {
    validator->schedule(300ms, []() -> TextRope {
        ADD_FAILURE() << "asked";
        return {};
    });
    validator.reset();
    clock.advance(300ms);
    EXPECT_EQ(clock.pendingCount(), 0U);
}

TEST_F(TextValidatorRequestsTests, ItMayBeDestroyedByWhoeverFollowsItsState) {
    QObject::connect(validator.get(), &TextValidator::stateChanged, [this] { validator.reset(); });
    validate("[1]");
    EXPECT_TRUE(QTest::qWaitFor([this] { return validator == nullptr; }));
    QCoreApplication::processEvents();
}

TEST_F(TextValidatorRequestsTests, ARequestMayBeMadeByWhoeverFollowsItsState) {
    const auto again = [this] { validator->schedule(10ms, [] { return rope("[1,2]"); }); };
    QObject::connect(validator.get(), &TextValidator::stateChanged, validator.get(), again, Qt::SingleShotConnection);
    validate("[1]");
    EXPECT_TRUE(QTest::qWaitFor([this] { return validator->state() == State::valid(2); }));
    EXPECT_TRUE(validator->isPending());
    clock.advance(10ms);
    ASSERT_TRUE(awaitResult());
    EXPECT_EQ(validator->state(), State::valid(3));
}

TEST_F(TextValidatorRequestsTests, TheSystemsClockAndParserServeByThemselves) {
    TextValidator real;
    real.schedule(1ms, [] { return rope("[1,2]"); });
    EXPECT_TRUE(real.isPending());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !real.isPending(); }));
    EXPECT_EQ(real.state(), State::valid(3));
}

} // namespace
} // namespace quelm
