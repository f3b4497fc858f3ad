#include "Quelm/Foundation/UndoManager.h"
#include "Tests/Quelm/Foundation/UndoableNumber.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSignalSpy>

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace quelm {
namespace {

class UndoManagerLifetimeTests : public testing::Test {
protected:
    void registerStep(QObject& target, std::function<void()> handler) {
        manager->registerUndo<QObject>(&target, [handler = std::move(handler)](QObject&) { handler(); });
    }

    std::unique_ptr<UndoManager> manager = std::make_unique<UndoManager>();
    UndoableNumber lasting{*manager};
    std::unique_ptr<UndoableNumber> brief = std::make_unique<UndoableNumber>(*manager);
};

TEST_F(UndoManagerLifetimeTests, AStepWhoseTargetIsGoneIsPassedOver) {
    lasting.set(1);
    manager->setActionName(QStringLiteral("Uno"));
    brief->set(2);
    manager->setActionName(QStringLiteral("Dos"));
    lasting.set(3);
    brief->set(4);
    brief.reset();
    manager->undo();
    EXPECT_EQ(lasting.value(), 1);
    EXPECT_EQ(manager->undoActionName(), QStringLiteral("Uno"));
    manager->undo();
    EXPECT_EQ(lasting.value(), 0);
    EXPECT_FALSE(manager->canUndo());
    manager->redo();
    manager->redo();
    EXPECT_EQ(lasting.value(), 3);
    EXPECT_FALSE(manager->canRedo());
}

TEST_F(UndoManagerLifetimeTests, StepsThatWereUndoneArePassedOverLikewise) {
    brief->set(1);
    lasting.set(2);
    manager->undo();
    manager->undo();
    brief.reset();
    EXPECT_TRUE(manager->canRedo());
    manager->redo();
    EXPECT_EQ(lasting.value(), 2);
    EXPECT_FALSE(manager->canRedo());
    EXPECT_TRUE(manager->canUndo());
}

TEST_F(UndoManagerLifetimeTests, TheEndOfATargetIsAnnouncedAndFreesWhatItsHandlersHold) {
    auto held = std::make_shared<int>(1);
    manager->registerUndo<UndoableNumber>(brief.get(), [held](UndoableNumber&) {});
    QSignalSpy changes(manager.get(), &UndoManager::changed);
    brief.reset();
    EXPECT_EQ(changes.count(), 0) << "who hears of it might ask what the target was a part of";
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(manager->canUndo());
    EXPECT_EQ(manager->openStep(), 0);
}

TEST_F(UndoManagerLifetimeTests, AHandlerMayDestroyItsTarget) {
    lasting.set(1);
    registerStep(*brief, [this] {
        brief->set(2);
        brief.reset();
    });
    manager->undo();
    EXPECT_EQ(brief, nullptr);
    EXPECT_FALSE(manager->canRedo());
    manager->undo();
    EXPECT_EQ(lasting.value(), 0);
}

TEST_F(UndoManagerLifetimeTests, AHandlerMayDestroyTheTargetOfTheNextOne) {
    bool isCalled = false;
    registerStep(lasting, [&] {
        registerStep(*brief, [&] { isCalled = true; });
        registerStep(lasting, [&] { brief.reset(); });
    });
    manager->undo();
    manager->redo();
    EXPECT_FALSE(isCalled);
    EXPECT_FALSE(manager->canUndo());
}

TEST_F(UndoManagerLifetimeTests, AHandlerMayDestroyTheManager) {
    const auto held = std::make_shared<int>(5);
    bool isNextCalled = false;
    int seen = 0;
    registerStep(lasting, [&, held] {
        registerStep(lasting, [&] { isNextCalled = true; });
        registerStep(lasting, [&, held] {
            manager.reset();
            seen = *held;
        });
    });
    manager->undo();
    manager->redo();
    EXPECT_EQ(manager, nullptr);
    EXPECT_FALSE(isNextCalled);
    EXPECT_EQ(seen, 5);
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(UndoManagerLifetimeTests, AHandlerMayDestroyTheManagerAndThrow) {
    registerStep(lasting, [this] {
        manager.reset();
        throw std::runtime_error("gone");
    });
    EXPECT_THROW(manager->undo(), std::runtime_error);
    EXPECT_EQ(manager, nullptr);
}

TEST_F(UndoManagerLifetimeTests, WhoHearsOfAnUndoMayDestroyTheManager) {
    lasting.set(1);
    QObject::connect(manager.get(), &UndoManager::willUndoOrRedo, &lasting, [this] { manager.reset(); });
    manager->undo();
    EXPECT_EQ(lasting.value(), 1);
}

TEST_F(UndoManagerLifetimeTests, ATargetMayOutliveTheManager) {
    lasting.set(1);
    manager.reset();
    brief.reset();
    EXPECT_EQ(lasting.value(), 1);
}

TEST_F(UndoManagerLifetimeTests, AHandlerMayOwnItsTarget) {
    for (const bool isRemoved : {true, false}) {
        auto first = std::make_shared<QObject>();
        auto second = std::make_shared<QObject>();
        const QPointer<QObject> firstAlive(first.get());
        const QPointer<QObject> secondAlive(second.get());
        lasting.set(1);
        registerStep(*first, [second] {});
        registerStep(*second, [first] {});
        first.reset();
        second.reset();
        EXPECT_TRUE(firstAlive);
        if (isRemoved) {
            manager->removeAllActions();
            EXPECT_FALSE(manager->canUndo());
        } else {
            manager->undo();
            manager->undo();
            manager->undo();
            EXPECT_EQ(lasting.value(), 1);
            lasting.set(5);
        }
        EXPECT_FALSE(firstAlive);
        EXPECT_FALSE(secondAlive);
    }
}

} // namespace
} // namespace quelm
