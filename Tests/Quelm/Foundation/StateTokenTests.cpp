#include "Quelm/Foundation/StateToken.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <set>

namespace quelm {
namespace {

class StateTokenTests : public testing::Test {
protected:
    StateToken token;
};

TEST_F(StateTokenTests, EveryChangeMovesToATokenNeverSeenBefore) {
    std::set<StateToken::Value> seen{token.current()};
    const StateToken::Value first = token.current();
    for (int change = 0; change < 100; ++change) {
        token.advance();
        EXPECT_TRUE(seen.insert(token.current()).second);
        if (change % 7 == 0)
            token.moveTo(first);
    }
}

TEST_F(StateTokenTests, TheNextTokenIsKnownBeforeTheChange) {
    for (int change = 0; change < 3; ++change) {
        const StateToken::Value next = token.next();
        token.moveTo(0);
        EXPECT_EQ(token.next(), next);
        token.advance();
        EXPECT_EQ(token.current(), next);
    }
}

TEST_F(StateTokenTests, ThePreviousTokenIsThatBeforeTheLastChange) {
    const StateToken::Value first = token.current();
    token.advance();
    EXPECT_EQ(token.previous(), first);
    const StateToken::Value second = token.current();
    token.moveTo(first);
    EXPECT_EQ(token.previous(), second);
    token.advance();
    EXPECT_EQ(token.previous(), first);
}

TEST_F(StateTokenTests, AMoveIsAnnouncedOnceAndAMoveToTheSameStateIsNot) {
    QSignalSpy changes(&token, &StateToken::currentChanged);
    const StateToken::Value first = token.current();
    token.advance();
    EXPECT_EQ(changes.count(), 1);
    token.moveTo(token.current());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(token.previous(), first);
    token.moveTo(first);
    EXPECT_EQ(changes.count(), 2);
}

TEST(StateTokenDeathTests, AStateThatNeverWasCannotBeReturnedTo) {
    StateToken token;
    EXPECT_DEATH(token.moveTo(token.current() + 1), "a state to return to has been before");
}

} // namespace
} // namespace quelm
