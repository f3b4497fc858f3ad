#include "Quelm/Foundation/UndoManager.h"
#include "Tests/Quelm/Foundation/UndoableNumber.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <stdexcept>

namespace quelm {
namespace {

class UndoManagerTokenTests : public testing::Test {
protected:
    UndoManagerTokenTests() {
        manager.setStateToken(&token);
        number.setStateToken(&token);
    }

    StateToken token;
    UndoManager manager;
    UndoableNumber number{manager};
};

TEST_F(UndoManagerTokenTests, UndoReturnsToTheTokenOfBeforeAndRedoForwardAgain) {
    std::vector<StateToken::Value> tokens{token.current()};
    for (int value = 1; value <= 5; ++value) {
        number.set(value);
        tokens.push_back(token.current());
    }
    for (int round = 0; round < 2; ++round) {
        for (std::size_t step = 5; step > 0; --step) {
            manager.undo();
            EXPECT_EQ(token.current(), tokens[step - 1]);
        }
        for (std::size_t step = 1; step <= 5; ++step) {
            manager.redo();
            EXPECT_EQ(token.current(), tokens[step]);
        }
    }
}

TEST_F(UndoManagerTokenTests, AnEditWithoutAStepInBetweenGivesANewToken) {
    const StateToken::Value first = token.current();
    number.set(1);
    const StateToken::Value second = token.current();
    number.setWithoutStep(2);
    const StateToken::Value third = token.current();
    manager.undo();
    const StateToken::Value fourth = token.current();
    EXPECT_NE(fourth, first);
    EXPECT_NE(fourth, second);
    EXPECT_NE(fourth, third);
    // Redoing takes back the undo alone.
    manager.redo();
    EXPECT_EQ(token.current(), third);
    manager.undo();
    EXPECT_EQ(token.current(), fourth);
}

TEST_F(UndoManagerTokenTests, AStepAfterAnEditWithoutOneReturnsToThatEdit) {
    number.setWithoutStep(1);
    const StateToken::Value edited = token.current();
    number.set(2);
    manager.undo();
    EXPECT_EQ(token.current(), edited);
}

TEST_F(UndoManagerTokenTests, AnEditWithoutAStepBetweenTwoStepsCutsTheWayBack) {
    const StateToken::Value first = token.current();
    number.set(1);
    number.setWithoutStep(2);
    const StateToken::Value edited = token.current();
    number.set(3);
    manager.undo();
    EXPECT_EQ(token.current(), edited);
    manager.undo();
    EXPECT_NE(token.current(), first);
}

TEST_F(UndoManagerTokenTests, RegisteringIsAChangeEvenIfNobodyMovedTheToken) {
    UndoableNumber silent(manager);
    const StateToken::Value first = token.current();
    silent.set(1);
    const StateToken::Value second = token.current();
    EXPECT_NE(second, first);
    silent.set(2);
    EXPECT_NE(token.current(), second);
    manager.undo();
    EXPECT_EQ(token.current(), second);
    manager.undo();
    EXPECT_EQ(token.current(), first);
    manager.redo();
    EXPECT_EQ(token.current(), second);
}

TEST_F(UndoManagerTokenTests, RemovingAllActionsLeavesTheToken) {
    number.set(1);
    const StateToken::Value second = token.current();
    manager.removeAllActions();
    EXPECT_EQ(token.current(), second);
    number.set(2);
    manager.undo();
    EXPECT_EQ(token.current(), second);
}

TEST_F(UndoManagerTokenTests, AStepThatGrewEndsInTheStateOfItsLastChange) {
    const StateToken::Value first = token.current();
    number.set(1);
    number.grow(2);
    number.grow(3);
    const StateToken::Value last = token.current();
    manager.undo();
    EXPECT_EQ(token.current(), first);
    manager.redo();
    EXPECT_EQ(token.current(), last);
}

TEST_F(UndoManagerTokenTests, GrowthMovesATokenThatNobodyMoved) {
    number.set(1);
    const StateToken::Value second = token.current();
    manager.noteOpenStepGrew();
    EXPECT_NE(token.current(), second);
}

TEST_F(UndoManagerTokenTests, AStepThatGrewAroundAnotherEditLeadsBackToNoKnownState) {
    const StateToken::Value first = token.current();
    number.set(1);
    number.setWithoutStep(2);
    number.grow(3);
    const StateToken::Value last = token.current();
    manager.undo();
    EXPECT_NE(token.current(), first);
    EXPECT_NE(token.current(), last);
}

TEST_F(UndoManagerTokenTests, AStepThatIsDroppedMovesTheTokenOnlyByWhatItChanges) {
    const StateToken::Value first = token.current();
    manager.registerUndo<UndoableNumber>(&number, [](UndoableNumber&) {});
    const StateToken::Value second = token.current();
    manager.undo();
    EXPECT_EQ(token.current(), second);
    manager.registerUndo<UndoableNumber>(&number, [](UndoableNumber& number) { number.setWithoutStep(9); });
    manager.undo();
    EXPECT_NE(token.current(), first);
    EXPECT_NE(token.current(), second);
}

TEST_F(UndoManagerTokenTests, AStepHalfOfWhoseTargetsAreGoneLeadsToANewState) {
    auto other = std::make_unique<UndoableNumber>(manager);
    const StateToken::Value first = token.current();
    manager.registerUndo<UndoableNumber>(&number, [&](UndoableNumber&) {
        number.set(1);
        other->set(2);
    });
    manager.undo();
    EXPECT_EQ(token.current(), first);
    other.reset();
    manager.redo();
    EXPECT_NE(token.current(), first);
    EXPECT_EQ(number.value(), 0);
}

TEST_F(UndoManagerTokenTests, AHandlerThatThrowsLeadsToANewState) {
    const StateToken::Value first = token.current();
    manager.registerUndo<UndoableNumber>(&number, [](UndoableNumber& number) {
        number.set(1);
        throw std::runtime_error("full");
    });
    EXPECT_THROW(manager.undo(), std::runtime_error);
    EXPECT_NE(token.current(), first);
}

TEST_F(UndoManagerTokenTests, ATokenSetLaterKnowsNothingOfTheStepsBefore) {
    number.set(1);
    StateToken later;
    manager.setStateToken(&later);
    number.setStateToken(&later);
    const StateToken::Value first = later.current();
    manager.undo();
    EXPECT_NE(later.current(), first);
    manager.redo();
    EXPECT_EQ(later.current(), first);
}

TEST_F(UndoManagerTokenTests, ATokenMayBeGoneBeforeTheManager) {
    auto brief = std::make_unique<StateToken>();
    UndoableNumber other(manager);
    manager.setStateToken(brief.get());
    other.set(1);
    brief.reset();
    manager.undo();
    EXPECT_EQ(other.value(), 0);
    other.set(2);
    manager.undo();
    manager.redo();
    EXPECT_EQ(other.value(), 2);
}

TEST_F(UndoManagerTokenTests, WhoHearsOfTheTokenMayDropAllSteps) {
    number.set(1);
    number.setWithoutStep(2);
    QObject::connect(&token, &StateToken::currentChanged, &manager, &UndoManager::removeAllActions);
    manager.undo();
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
    UndoableNumber silent(manager);
    silent.set(3);
    EXPECT_TRUE(manager.canUndo());
    manager.noteOpenStepGrew();
    EXPECT_FALSE(manager.canUndo());
}

/// Equal tokens must mean equal values, in any order of steps, undos, redos and edits without a step.
TEST_F(UndoManagerTokenTests, EqualTokensAlwaysMeanTheSameState) {
    std::map<StateToken::Value, int> values{{token.current(), 0}};
    std::mt19937 random(11); // NOLINT(cert-msc51-cpp): the same steps in every run
    int joined = 0;
    for (int action = 0; action < 20'000; ++action) {
        switch (random() % 8) {
        case 0:
        case 1:
            number.set(action + 1);
            break;
        case 2:
            if (manager.openStep() != 0) {
                number.grow(action + 1);
                ++joined;
            }
            break;
        case 3:
            number.setWithoutStep(-action);
            break;
        case 4:
        case 5:
            manager.redo();
            break;
        default:
            manager.undo();
        }
        const auto [known, isNew] = values.emplace(token.current(), number.value());
        ASSERT_EQ(known->second, number.value());
    }
    EXPECT_GT(joined, 0);
}

} // namespace
} // namespace quelm
