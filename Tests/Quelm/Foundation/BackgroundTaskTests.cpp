#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/Foundation/BackgroundThreads.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <gtest/gtest.h>
#include <optional>

namespace quelm {
namespace {

TEST(BackgroundTaskTests, WorkRunsElsewhereAndItsResultComesBack) {
    QObject context;
    const QThread* here = QThread::currentThread();
    const QThread* workedOn = nullptr;
    const QThread* deliveredOn = nullptr;
    int result = 0;
    BackgroundTask task = startInBackground(
        &context,
        [&](std::stop_token) {
            workedOn = QThread::currentThread();
            return 42;
        },
        [&](int value) {
            deliveredOn = QThread::currentThread();
            result = value;
        });
    EXPECT_TRUE(task.isRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return result != 0; }));
    EXPECT_EQ(result, 42);
    EXPECT_NE(workedOn, here);
    EXPECT_EQ(deliveredOn, here);
    EXPECT_FALSE(task.isRunning());
}

/// Work that goes on until it is told to stop.
struct EndlessWork {
    std::shared_ptr<std::atomic<bool>> stopped = std::make_shared<std::atomic<bool>>(false);

    bool operator()(std::stop_token stop) const {
        while (!stop.stop_requested())
            QThread::yieldCurrentThread();
        *stopped = true;
        return true;
    }
};

TEST(BackgroundTaskTests, ACancelledTaskStopsAndDeliversNothing) {
    QObject context;
    const EndlessWork work;
    bool isDelivered = false;
    BackgroundTask task = startInBackground(&context, work, [&](bool) { isDelivered = true; });
    task.cancel();
    EXPECT_FALSE(task.isRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return work.stopped->load(); }));
    QTest::qWait(20);
    EXPECT_FALSE(isDelivered);
}

TEST(BackgroundTaskTests, ReplacingATaskCancelsTheFormerOne) {
    QObject context;
    const EndlessWork former;
    BackgroundTask task = startInBackground(&context, former, [](bool) {});
    std::optional<int> result;
    task = startInBackground(&context, [](std::stop_token) { return 7; }, [&](int value) { result = value; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return former.stopped->load() && result; }));
    EXPECT_EQ(result, 7);
}

TEST(BackgroundTaskTests, AContextThatIsGoneReceivesNothing) {
    auto context = std::make_unique<QObject>();
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> hasEnded = false;
    bool isDelivered = false;
    startInBackground(
        context.get(),
        [&](std::stop_token) {
            while (!mayEnd)
                QThread::yieldCurrentThread();
            hasEnded = true;
            return 0;
        },
        [&](int) { isDelivered = true; })
        .detach();
    context.reset();
    mayEnd = true;
    EXPECT_TRUE(QTest::qWaitFor([&] { return hasEnded.load(); }));
    QTest::qWait(20);
    EXPECT_FALSE(isDelivered);
}

TEST(BackgroundTaskTests, TheContextMayBeDeletedFromWithinTheDelivery) {
    auto* context = new QObject;
    bool isDelivered = false;
    BackgroundTask task = startInBackground(
        context, [](std::stop_token) { return 0; },
        [&](int) {
            delete context;
            isDelivered = true;
        });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isDelivered; }));
    QTest::qWait(1);
}

TEST(BackgroundTaskTests, ADetachedTaskStillDelivers) {
    QObject context;
    int result = 0;
    startInBackground(
        &context, [](std::stop_token stop) { return stop.stop_requested() ? 1 : 2; },
        [&](int value) { result = value; })
        .detach();
    EXPECT_TRUE(QTest::qWaitFor([&] { return result != 0; }));
    EXPECT_EQ(result, 2);
}

TEST(BackgroundTaskTests, WorkThatIsAskedToStopStillDelivers) {
    QObject context;
    bool isDelivered = false;
    BackgroundTask task = startInBackground(&context, EndlessWork(), [&](bool) { isDelivered = true; });
    task.requestStop();
    EXPECT_TRUE(task.isRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return isDelivered; }));
    EXPECT_FALSE(task.isRunning());
    task.requestStop();
}

TEST(BackgroundTaskTests, AHandleOfNothingStopsNothing) {
    BackgroundTask task;
    task.requestStop();
    EXPECT_FALSE(task.isRunning());
}

/// Work whose result tells where it is freed, and that has one as soon as it is there.
struct NotedResult {
    std::shared_ptr<std::atomic<bool>> isThere = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<std::atomic<const QThread*>> freedOn = std::make_shared<std::atomic<const QThread*>>(nullptr);

    std::shared_ptr<int> operator()(const std::stop_token&) const {
        *isThere = true;
        return {new int(1), [freedOn = freedOn](int* number) {
                    delete number;
                    *freedOn = QThread::currentThread();
                }};
    }
    void await() const {
        while (!*isThere)
            QThread::yieldCurrentThread();
        backgroundThreads().waitForDone();
    }
};

TEST(BackgroundTaskTests, AResultThatComesTooLateIsFreedOnAnotherThread) {
    QObject context;
    const NotedResult work;
    bool isDelivered = false;
    BackgroundTask task = startInBackground(&context, work, [&](const std::shared_ptr<int>&) { isDelivered = true; });
    work.await();
    task.cancel();
    EXPECT_TRUE(QTest::qWaitFor([&] { return work.freedOn->load() != nullptr; }));
    EXPECT_NE(*work.freedOn, QThread::currentThread());
    EXPECT_FALSE(isDelivered);
}

TEST(BackgroundTaskTests, AResultWithoutAContextIsFreedOnAnotherThread) {
    auto context = std::make_unique<QObject>();
    const NotedResult work;
    startInBackground(context.get(), work, [](const std::shared_ptr<int>&) {}).detach();
    work.await();
    context.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return work.freedOn->load() != nullptr; }));
    EXPECT_NE(*work.freedOn, QThread::currentThread());
}

TEST(BackgroundTaskTests, AResultThatIsDeliveredIsTheReceivers) {
    QObject context;
    const NotedResult work;
    std::shared_ptr<int> result;
    BackgroundTask task =
        startInBackground(&context, work, [&](std::shared_ptr<int> value) { result = std::move(value); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return result != nullptr; }));
    EXPECT_EQ(result.use_count(), 1);
    EXPECT_EQ(work.freedOn->load(), nullptr);
}

TEST(BackgroundTaskTests, TheHandleMayBeReplacedFromWithinTheDelivery) {
    QObject context;
    BackgroundTask task;
    int result = 0;
    task = startInBackground(
        &context, [](std::stop_token) { return 1; },
        [&](int) {
            task = startInBackground(&context, [](std::stop_token) { return 2; }, [&](int value) { result = value; });
        });
    EXPECT_TRUE(QTest::qWaitFor([&] { return result == 2; }));
}

} // namespace
} // namespace quelm
