#include "Quelm/Foundation/UndoManager.h"
#include "Tests/Quelm/Foundation/UndoableNumber.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <stdexcept>

namespace quelm {
namespace {

class UndoManagerTests : public testing::Test {
protected:
    /// Registers a step that does nothing but be there.
    UndoManager::StepID registerStep(std::function<void()> handler = [] {}) {
        return manager.registerUndo<QObject>(&target, [handler = std::move(handler)](QObject&) { handler(); });
    }

    UndoManager manager;
    QObject target;
    UndoableNumber number{manager};
};

TEST_F(UndoManagerTests, ANewManagerHasNothingToUndoOrRedo) {
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
    EXPECT_EQ(manager.openStep(), 0);
    EXPECT_EQ(manager.undoMenuItemTitle(), QStringLiteral("Deshacer"));
    EXPECT_EQ(manager.redoMenuItemTitle(), QStringLiteral("Rehacer"));
    QSignalSpy beginnings(&manager, &UndoManager::willUndoOrRedo);
    QSignalSpy changes(&manager, &UndoManager::changed);
    manager.undo();
    manager.redo();
    EXPECT_EQ(beginnings.count(), 0);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(UndoManagerTests, WhatAHandlerRegistersIsTheRedoAndThenTheUndoAgain) {
    number.set(1);
    number.set(2);
    for (int round = 0; round < 3; ++round) {
        manager.undo();
        EXPECT_EQ(number.value(), 1);
        manager.undo();
        EXPECT_EQ(number.value(), 0);
        EXPECT_FALSE(manager.canUndo());
        manager.redo();
        EXPECT_EQ(number.value(), 1);
        manager.redo();
        EXPECT_EQ(number.value(), 2);
        EXPECT_FALSE(manager.canRedo());
    }
}

TEST_F(UndoManagerTests, AStepRegisteredOutsideOfHandlersDropsWhatWasUndone) {
    number.set(1);
    manager.undo();
    number.set(5);
    EXPECT_FALSE(manager.canRedo());
    manager.undo();
    EXPECT_EQ(number.value(), 0);
    EXPECT_FALSE(manager.canUndo());
}

TEST_F(UndoManagerTests, AHandlerThatRegistersNothingDropsItsStep) {
    number.set(1);
    registerStep();
    manager.undo();
    EXPECT_EQ(number.value(), 1);
    EXPECT_FALSE(manager.canRedo());
    EXPECT_TRUE(manager.canUndo());
    manager.undo();
    EXPECT_EQ(number.value(), 0);
}

TEST_F(UndoManagerTests, ARedoThatRegistersNothingDropsItsStep) {
    registerStep([this] { registerStep(); });
    manager.undo();
    EXPECT_TRUE(manager.canRedo());
    manager.redo();
    EXPECT_FALSE(manager.canRedo());
    EXPECT_FALSE(manager.canUndo());
}

TEST_F(UndoManagerTests, WhatOneHandlerRegistersTwiceIsOneStepInReverseOrder) {
    std::vector<std::string> calls;
    registerStep([&] {
        registerStep([&] { calls.emplace_back("first"); });
        registerStep([&] {
            calls.emplace_back("second");
            registerStep();
        });
    });
    manager.undo();
    manager.redo();
    EXPECT_THAT(calls, testing::ElementsAre("second", "first"));
    EXPECT_FALSE(manager.canRedo());
    EXPECT_TRUE(manager.canUndo());
    manager.undo();
    EXPECT_FALSE(manager.canUndo());
}

TEST_F(UndoManagerTests, StepsKeepTheirNumberWhileTheyAreUndoneAndRedone) {
    UndoManager::StepID opposite = 0;
    const UndoManager::StepID first = registerStep([&] { opposite = registerStep([&] { registerStep(); }); });
    EXPECT_NE(first, 0);
    EXPECT_EQ(manager.openStep(), first);
    manager.undo();
    EXPECT_EQ(opposite, first);
    EXPECT_EQ(manager.openStep(), 0);
    manager.redo();
    EXPECT_EQ(manager.openStep(), first);
    EXPECT_GT(registerStep(), first);
}

TEST_F(UndoManagerTests, NoStepIsOpenWithinAHandlerOrWhileOneCanBeRedone) {
    number.set(1);
    number.set(2);
    UndoManager::StepID open = 1;
    registerStep([&] { open = manager.openStep(); });
    manager.undo();
    EXPECT_EQ(open, 0);
    EXPECT_NE(manager.openStep(), 0);
    manager.undo();
    EXPECT_TRUE(manager.canUndo());
    EXPECT_EQ(manager.openStep(), 0);
}

TEST_F(UndoManagerTests, AStepIsCalledWhatItWasNamed) {
    number.set(1);
    manager.setActionName(QStringLiteral("Escribir"));
    number.set(2);
    manager.setActionName(QStringLiteral("Pegar"));
    EXPECT_EQ(manager.undoActionName(), QStringLiteral("Pegar"));
    EXPECT_EQ(manager.undoMenuItemTitle(), QStringLiteral("Deshacer Pegar"));
    manager.undo();
    EXPECT_EQ(manager.undoMenuItemTitle(), QStringLiteral("Deshacer Escribir"));
    EXPECT_EQ(manager.redoActionName(), QStringLiteral("Pegar"));
    EXPECT_EQ(manager.redoMenuItemTitle(), QStringLiteral("Rehacer Pegar"));
    manager.redo();
    EXPECT_EQ(manager.undoActionName(), QStringLiteral("Pegar"));
}

TEST_F(UndoManagerTests, AHandlerMayNameItsStepAnew) {
    number.set(1);
    manager.setActionName(QStringLiteral("Uno"));
    registerStep([this] {
        registerStep();
        manager.setActionName(QStringLiteral("Tres"));
    });
    manager.setActionName(QStringLiteral("Dos"));
    manager.undo();
    EXPECT_EQ(manager.redoActionName(), QStringLiteral("Tres"));
    EXPECT_EQ(manager.undoActionName(), QStringLiteral("Uno"));
}

TEST_F(UndoManagerTests, ANameIsForTheLastRegisteredStepAlone) {
    manager.setActionName(QStringLiteral("Nada"));
    number.set(1);
    EXPECT_EQ(manager.undoActionName(), QString());
    registerStep();
    manager.undo();
    manager.setActionName(QStringLiteral("Perdido"));
    EXPECT_EQ(manager.undoActionName(), QString());
}

TEST_F(UndoManagerTests, TheDirectionIsKnownWithinHandlersOnly) {
    std::vector<std::string> directions;
    const auto note = [&] {
        directions.emplace_back(manager.isUndoing() ? "undoing" : manager.isRedoing() ? "redoing" : "neither");
    };
    note();
    registerStep([&] {
        note();
        registerStep(note);
    });
    manager.undo();
    note();
    manager.redo();
    note();
    EXPECT_THAT(directions, testing::ElementsAre("neither", "undoing", "neither", "redoing", "neither"));
}

TEST_F(UndoManagerTests, UndoAndRedoWithinAHandlerDoNothing) {
    number.set(1);
    registerStep([this] {
        manager.undo();
        manager.redo();
        EXPECT_TRUE(manager.isUndoing());
        registerStep();
    });
    manager.undo();
    EXPECT_EQ(number.value(), 1);
    EXPECT_TRUE(manager.canUndo());
    EXPECT_TRUE(manager.canRedo());
}

TEST_F(UndoManagerTests, RemovingAllActionsLeavesNothing) {
    number.set(1);
    number.set(2);
    manager.undo();
    manager.removeAllActions();
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
    EXPECT_EQ(number.value(), 1);
    manager.setActionName(QStringLiteral("Perdido"));
    number.set(7);
    manager.undo();
    EXPECT_EQ(number.value(), 1);
}

TEST_F(UndoManagerTests, AHandlerThatRemovesAllActionsRegistersNothingAnyMore) {
    number.set(1);
    UndoManager::StepID registered = 1;
    registerStep([&] {
        registerStep();
        manager.removeAllActions();
        registered = registerStep();
        manager.setActionName(QStringLiteral("Perdido"));
    });
    manager.undo();
    EXPECT_EQ(registered, 0);
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
    number.set(2);
    EXPECT_TRUE(manager.canUndo());
}

TEST_F(UndoManagerTests, WhatAHandlerThrowsReachesTheCallerAndWhatItRegisteredStays) {
    bool isFirstCalled = false;
    registerStep([&] {
        registerStep([&] { isFirstCalled = true; });
        registerStep([&] {
            number.set(3);
            throw std::runtime_error("full");
        });
    });
    manager.undo();
    QSignalSpy changes(&manager, &UndoManager::changed);
    EXPECT_THROW(manager.redo(), std::runtime_error);
    EXPECT_FALSE(isFirstCalled);
    EXPECT_FALSE(manager.isRedoing());
    EXPECT_EQ(changes.count(), 1);
    manager.undo();
    EXPECT_EQ(number.value(), 0);
}

TEST_F(UndoManagerTests, AHandlerThatThrowsBeforeItRegistersDropsItsStep) {
    registerStep([] { throw std::runtime_error("full"); });
    EXPECT_THROW(manager.undo(), std::runtime_error);
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
}

TEST_F(UndoManagerTests, ChangesAreAnnouncedOnceEach) {
    QSignalSpy changes(&manager, &UndoManager::changed);
    number.set(1);
    EXPECT_EQ(changes.count(), 1);
    manager.setActionName(QStringLiteral("Uno"));
    EXPECT_EQ(changes.count(), 2);
    manager.setActionName(QStringLiteral("Uno"));
    EXPECT_EQ(changes.count(), 2);
    manager.undo();
    EXPECT_EQ(changes.count(), 3);
    manager.redo();
    EXPECT_EQ(changes.count(), 4);
    manager.removeAllActions();
    EXPECT_EQ(changes.count(), 5);
    manager.removeAllActions();
    EXPECT_EQ(changes.count(), 5);
}

TEST_F(UndoManagerTests, AStepRegisteredJustBeforeAnUndoIsTheOneUndone) {
    number.set(1);
    QObject::connect(&manager, &UndoManager::willUndoOrRedo, &target, [this] {
        number.set(2);
        manager.undo();
    });
    manager.undo();
    EXPECT_EQ(number.value(), 1);
    EXPECT_TRUE(manager.canUndo());
}

TEST_F(UndoManagerTests, AStepRegisteredJustBeforeARedoLeavesNothingToRedo) {
    number.set(1);
    manager.undo();
    QObject::connect(&manager, &UndoManager::willUndoOrRedo, &target, [this] { number.set(2); });
    manager.redo();
    EXPECT_EQ(number.value(), 2);
    EXPECT_FALSE(manager.canRedo());
}

/// Random steps, undos and redos, beside the plain list of all values.
TEST_F(UndoManagerTests, AnyOrderOfStepsGoesAlongOneLineOfValues) {
    std::vector<int> line{0};
    std::size_t place = 0;
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same steps in every run
    for (int action = 0; action < 20'000; ++action) {
        switch (random() % 5) {
        case 0:
        case 1:
            line.resize(++place);
            line.push_back(action);
            number.set(action);
            break;
        case 2:
        case 3:
            place -= place > 0 ? 1 : 0;
            manager.undo();
            break;
        default:
            place += place + 1 < line.size() ? 1 : 0;
            manager.redo();
        }
        ASSERT_EQ(number.value(), line[place]);
        ASSERT_EQ(manager.canUndo(), place > 0);
        ASSERT_EQ(manager.canRedo(), place + 1 < line.size());
    }
}

TEST(UndoManagerDeathTests, AStepNeedsATargetAndGrowthAnOpenStep) {
    UndoManager manager;
    EXPECT_DEATH(manager.registerUndo<QObject>(nullptr, [](QObject&) {}), "an undo step has a target");
    EXPECT_DEATH(manager.noteOpenStepGrew(), "a step is open");
}

} // namespace
} // namespace quelm
