#include "Quelm/Foundation/BackgroundThreads.h"
#include "Tests/Quelm/EditorWindow/EditorModelTest.h"

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::chrono::milliseconds oneMillisecond{1};

/// What happens while an operation has the document in hand.
class EditorModelBusyTests : public EditorModelTest {
protected:
    /// Cancels an operation that has ended on its thread, before anybody has heard of that.
    void cancelWhenDone() {
        backgroundThreads().waitForDone();
        model->cancelWork();
        QCoreApplication::processEvents();
        EXPECT_FALSE(model->isBusy());
    }
};

TEST_F(EditorModelBusyTests, TheDocumentCannotBeEditedMeanwhile) {
    openTree("[1, 2]");
    BlockedPool pool;
    for (const bool isSwitch : {false, true}) {
        if (isSwitch)
            model->switchMode(EditorMode::text);
        else
            model->format(compact);
        EXPECT_TRUE(model->isBusy());
        EXPECT_TRUE(model->tree().isReadOnly());
        EXPECT_TRUE(undoManager.isSuspended());
        pool.finish();
        EXPECT_FALSE(model->isBusy());
        EXPECT_FALSE(model->tree().isReadOnly());
        EXPECT_FALSE(undoManager.isSuspended());
    }
    EXPECT_EQ(document->mode(), EditorMode::text);
}

TEST_F(EditorModelBusyTests, FurtherOperationsAreDropped) {
    openText("[1, 2]");
    BlockedPool pool;
    model->format(compact);
    model->switchMode(EditorMode::tree);
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy"));
    pool.finish();
    EXPECT_EQ(document->mode(), EditorMode::text);
    EXPECT_EQ(shownText(), "[1,2]");

    model->switchMode(EditorMode::tree);
    model->format(pretty);
    wait();
    EXPECT_EQ(document->mode(), EditorMode::tree);
    EXPECT_EQ(savedText(), "[1,2]");
}

TEST_F(EditorModelBusyTests, WorkIsShownWhenItHasTakenHalfASecond) {
    openText("[1]");
    BlockedPool pool;
    model->format(compact);
    clock.advance(EditorModel::patience - oneMillisecond);
    EXPECT_FALSE(model->isWorkShown());
    takeLog();
    clock.advance(oneMillisecond);
    EXPECT_TRUE(model->isWorkShown());
    EXPECT_THAT(takeLog(), ElementsAre("work"));
    pool.finish();
    EXPECT_FALSE(model->isWorkShown());
    EXPECT_THAT(takeLog(), ElementsAre("revision", "work", "idle with steps"));
}

TEST_F(EditorModelBusyTests, QuickWorkIsNeverShown) {
    openText("[1]");
    model->switchMode(EditorMode::tree);
    wait();
    clock.advance(EditorModel::patience);
    EXPECT_FALSE(model->isWorkShown());
    EXPECT_EQ(clock.pendingCount(), 0U);
}

TEST_F(EditorModelBusyTests, EveryPieceOfWorkHasItsOwnHalfSecond) {
    openText("[1]");
    const TemporaryFolder folder;
    BlockedPool pool;
    model->writeExport(std::make_shared<const ExportDocument>(document->content(), compact),
                       folder.path(QStringLiteral("a.json")));
    clock.advance(EditorModel::patience - oneMillisecond);
    model->format(compact);
    clock.advance(oneMillisecond);
    EXPECT_TRUE(model->isWorkShown());
    document->apply(JSONContent::fromText(TextRope(SharedText("[2]"))));
    EXPECT_TRUE(model->isWorkShown());
    pool.finish();
    EXPECT_FALSE(model->isWorkShown());
}

// Cancelling.

TEST_F(EditorModelBusyTests, ACancelledFormattingChangesNothing) {
    openText("[1, 2]");
    BlockedPool pool;
    model->format(compact);
    model->cancelWork();
    EXPECT_FALSE(model->isBusy());
    pool.finish();
    EXPECT_EQ(shownText(), "[1, 2]");
    EXPECT_FALSE(undoManager.canUndo());
    EXPECT_FALSE(undoManager.isSuspended());
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "idle"));
}

TEST_F(EditorModelBusyTests, ACancelledSwitchChangesNothing) {
    openText("[1, 2]");
    BlockedPool pool;
    model->switchMode(EditorMode::tree);
    model->cancelWork();
    EXPECT_FALSE(model->isBusy());
    pool.finish();
    EXPECT_EQ(document->mode(), EditorMode::text);
    EXPECT_THAT(takeLog(), ElementsAre("read", "busy", "idle"));
}

TEST_F(EditorModelBusyTests, ASuccessThatComesAfterBeingCancelledIsDropped) {
    openText("[1, 2]");
    model->format(compact);
    cancelWhenDone();
    EXPECT_EQ(shownText(), "[1, 2]");

    model->switchMode(EditorMode::tree);
    cancelWhenDone();
    EXPECT_EQ(document->mode(), EditorMode::text);
}

TEST_F(EditorModelBusyTests, AFailureThatComesAfterBeingCancelledIsNotTold) {
    openText("[1, 2]");
    type("[");
    model->format(compact);
    cancelWhenDone();
    EXPECT_EQ(message(), "");
    EXPECT_EQ(place(), "");
}

TEST_F(EditorModelBusyTests, WhatComesAfterACancelledOperationIsDone) {
    openText("[1, 2]");
    model->format(compact);
    model->cancelWork();
    wait();
    model->format(compact);
    wait();
    EXPECT_EQ(shownText(), "[1,2]");
}

TEST_F(EditorModelBusyTests, WithNothingUnderWayThereIsNothingToCancel) {
    openText("[1, 2]");
    model->cancelWork();
    EXPECT_THAT(log, IsEmpty());
    model->format(compact);
    wait();
    EXPECT_EQ(shownText(), "[1,2]");
}

// A document that is applied anew, and a model that goes.

TEST_F(EditorModelBusyTests, ADocumentThatIsAppliedAnewCancelsTheOperation) {
    openText("[1, 2]");
    for (const bool isSwitch : {false, true}) {
        BlockedPool pool;
        if (isSwitch)
            model->switchMode(EditorMode::tree);
        else
            model->format(compact);
        takeLog();
        document->apply(JSONContent::fromText(TextRope(SharedText("{ }"))));
        EXPECT_FALSE(model->isBusy());
        EXPECT_FALSE(model->tree().isReadOnly());
        EXPECT_FALSE(undoManager.isSuspended());
        EXPECT_THAT(takeLog(), ElementsAre("revision", "idle"));
        pool.finish();
        EXPECT_EQ(document->mode(), EditorMode::text);
        EXPECT_EQ(savedText(), "{ }");
        EXPECT_THAT(log, IsEmpty());
    }
}

TEST_F(EditorModelBusyTests, AnOperationMayBeginWhileACancelledOneStillRuns) {
    openText("[1, 2]");
    BlockedPool pool;
    model->format(pretty);
    document->apply(JSONContent::fromText(TextRope(SharedText("[3, 4]"))));
    model->format(compact);
    EXPECT_TRUE(model->isBusy());
    pool.finish();
    EXPECT_FALSE(model->isBusy());
    EXPECT_EQ(savedText(), "[3,4]");
}

TEST_F(EditorModelBusyTests, AModelThatGoesCancelsItsOperation) {
    for (const bool isSwitch : {false, true}) {
        openText("[1, 2]");
        BlockedPool pool;
        if (isSwitch)
            model->switchMode(EditorMode::tree);
        else
            model->format(compact);
        takeLog();
        model.reset();
        EXPECT_FALSE(undoManager.isSuspended());
        EXPECT_EQ(clock.pendingCount(), 0U);
        pool.finish();
        EXPECT_EQ(document->mode(), EditorMode::text);
        EXPECT_EQ(savedText(), "[1, 2]");
        EXPECT_FALSE(undoManager.canUndo());
        EXPECT_THAT(log, IsEmpty());
    }
}

TEST_F(EditorModelBusyTests, TheDocumentIsLetGoOfWithTheModel) {
    openText("[1, 2]");
    BlockedPool pool;
    model->format(compact);
    const std::weak_ptr<JSONDocument> weak = document;
    document.reset();
    model.reset();
    EXPECT_TRUE(weak.expired());
    pool.finish();
}

} // namespace
} // namespace quelm
