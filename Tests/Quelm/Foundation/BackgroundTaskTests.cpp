#include "Quelm/Foundation/BackgroundTask.h"

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
