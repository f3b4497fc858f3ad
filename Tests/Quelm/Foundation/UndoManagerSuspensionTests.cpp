#include "Quelm/Foundation/UndoManager.h"
#include "Tests/Quelm/Foundation/UndoableNumber.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <memory>

namespace quelm {
namespace {

class UndoManagerSuspensionTests : public testing::Test {
protected:
    UndoManager manager;
    UndoableNumber number{manager};
};

TEST_F(UndoManagerSuspensionTests, WhileSuspendedThereIsNothingToUndoOrRedo) {
    number.set(1);
    manager.setActionName(QStringLiteral("Uno"));
    number.set(2);
    manager.undo();
    EXPECT_FALSE(manager.isSuspended());
    manager.setSuspended(true);
    EXPECT_TRUE(manager.isSuspended());
    EXPECT_FALSE(manager.canUndo());
    EXPECT_FALSE(manager.canRedo());
    EXPECT_EQ(manager.undoActionName(), QString());
    EXPECT_EQ(manager.redoActionName(), QString());
    EXPECT_EQ(manager.undoMenuItemTitle(), QStringLiteral("Deshacer"));
    EXPECT_EQ(manager.redoMenuItemTitle(), QStringLiteral("Rehacer"));

    QSignalSpy beginnings(&manager, &UndoManager::willUndoOrRedo);
    manager.undo();
    manager.redo();
    EXPECT_EQ(number.value(), 1);
    EXPECT_EQ(beginnings.count(), 0);
}

TEST_F(UndoManagerSuspensionTests, TheStepsAreThereAgainAfterwards) {
    number.set(1);
    manager.setActionName(QStringLiteral("Uno"));
    number.set(2);
    manager.setActionName(QStringLiteral("Dos"));
    manager.undo();
    manager.setSuspended(true);
    manager.setSuspended(false);
    EXPECT_EQ(manager.undoMenuItemTitle(), QStringLiteral("Deshacer Uno"));
    EXPECT_EQ(manager.redoMenuItemTitle(), QStringLiteral("Rehacer Dos"));
    manager.redo();
    EXPECT_EQ(number.value(), 2);
    manager.undo();
    manager.undo();
    EXPECT_EQ(number.value(), 0);
}

TEST_F(UndoManagerSuspensionTests, EachChangeOfItIsAnnouncedOnce) {
    QSignalSpy changes(&manager, &UndoManager::changed);
    manager.setSuspended(false);
    EXPECT_EQ(changes.count(), 0);
    manager.setSuspended(true);
    manager.setSuspended(true);
    EXPECT_EQ(changes.count(), 1);
    manager.setSuspended(false);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(UndoManagerSuspensionTests, StepsThatAreRegisteredMeanwhileCanBeUndoneAfterwards) {
    number.set(1);
    manager.undo();
    manager.setSuspended(true);
    number.set(7);
    manager.setActionName(QStringLiteral("Siete"));
    EXPECT_FALSE(manager.canUndo());
    manager.setSuspended(false);
    EXPECT_FALSE(manager.canRedo()) << "what was undone before it is gone";
    EXPECT_EQ(manager.undoActionName(), QStringLiteral("Siete"));
    manager.undo();
    EXPECT_EQ(number.value(), 0);
}

TEST_F(UndoManagerSuspensionTests, StepsCanBeDroppedMeanwhile) {
    number.set(1);
    manager.setSuspended(true);
    manager.removeAllActions();
    manager.setSuspended(false);
    EXPECT_FALSE(manager.canUndo());
}

TEST_F(UndoManagerSuspensionTests, NoChangeJoinsAStepFromBeforeIt) {
    number.set(1);
    EXPECT_NE(manager.openStep(), 0);
    manager.setSuspended(true);
    EXPECT_EQ(manager.openStep(), 0);
    manager.setSuspended(false);
    EXPECT_EQ(manager.openStep(), 0);
    number.set(2);
    EXPECT_NE(manager.openStep(), 0);
}

TEST_F(UndoManagerSuspensionTests, NoChangeJoinsAStepFromWithinIt) {
    manager.setSuspended(true);
    number.set(1);
    EXPECT_EQ(manager.openStep(), 0);
    manager.setSuspended(false);
    EXPECT_EQ(manager.openStep(), 0);
    number.set(2);
    EXPECT_NE(manager.openStep(), 0);
    manager.undo();
    EXPECT_EQ(manager.openStep(), 0) << "a step can be redone";
}

TEST_F(UndoManagerSuspensionTests, WhoeverHearsOfAnUndoInTimeCanStopIt) {
    number.set(1);
    QObject::connect(&manager, &UndoManager::willUndoOrRedo, &number, [this] { manager.setSuspended(true); });
    manager.undo();
    EXPECT_EQ(number.value(), 1);
    manager.setSuspended(false);
    EXPECT_TRUE(manager.canUndo());
}

TEST_F(UndoManagerSuspensionTests, AHandlerMaySuspendItsManager) {
    bool isTaken = false;
    manager.registerUndo<UndoableNumber>(&number, [&](UndoableNumber& target) {
        isTaken = true;
        manager.setSuspended(true);
        target.set(5);
    });
    QSignalSpy changes(&manager, &UndoManager::changed);
    manager.undo();
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(changes.count(), 1) << "once, when the step is taken";
    EXPECT_FALSE(manager.canRedo());
    manager.setSuspended(false);
    manager.redo();
    EXPECT_EQ(number.value(), 0);
}

} // namespace
} // namespace quelm
