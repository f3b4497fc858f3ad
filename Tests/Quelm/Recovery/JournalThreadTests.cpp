#include "Quelm/Recovery/JournalThread.h"

#include <atomic>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

namespace quelm {
namespace {

using testing::ElementsAre;

TEST(JournalThreadTests, WorkRunsInTheOrderInWhichItIsPosted) {
    JournalThread thread;
    std::vector<int> order;
    for (int number = 0; number < 1000; ++number)
        thread.post([&order, number] { order.push_back(number); });
    thread.wait();
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(JournalThreadTests, AllRunsOnOneOtherThread) {
    JournalThread thread;
    std::vector<std::thread::id> ids;
    thread.post([&] { ids.push_back(std::this_thread::get_id()); });
    thread.postSynchronizing([&] { ids.push_back(std::this_thread::get_id()); });
    thread.wait();
    ASSERT_EQ(ids.size(), 2U);
    EXPECT_EQ(ids[0], ids[1]);
    EXPECT_NE(ids[0], std::this_thread::get_id());
}

TEST(JournalThreadTests, SynchronizingComesAfterWhatIsPostedInOneGo) {
    JournalThread thread;
    std::vector<int> order;
    // Held back until all is posted.
    std::promise<void> begin;
    thread.post([started = begin.get_future().share()] { started.wait(); });
    thread.postSynchronizing([&] { order.push_back(3); });
    thread.post([&] { order.push_back(1); });
    thread.post([&] { order.push_back(2); });
    begin.set_value();
    thread.wait();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(JournalThreadTests, SynchronizingRunsWithoutBeingWaitedFor) {
    JournalThread thread;
    std::promise<void> synchronized;
    thread.postSynchronizing([&] { synchronized.set_value(); });
    synchronized.get_future().wait();
}

TEST(JournalThreadTests, WorkThatKeepsComingDoesNotPutSynchronizingOff) {
    JournalThread thread;
    std::atomic<bool> isSynchronized = false;
    thread.postSynchronizing([&] { isSynchronized = true; });
    // Each posts the next, until it has happened.
    std::function<void()> work = [&] {
        if (!isSynchronized)
            thread.post(work);
    };
    thread.post(work);
    thread.wait();
    EXPECT_TRUE(isSynchronized);
}

TEST(JournalThreadTests, WhatWorkPostsIsWaitedForToo) {
    JournalThread thread;
    int count = 0;
    thread.post([&] {
        thread.post([&] { thread.postSynchronizing([&] { ++count; }); });
        ++count;
    });
    thread.wait();
    EXPECT_EQ(count, 2);
}

TEST(JournalThreadTests, WorkIsLetGoOfWhenItHasRun) {
    JournalThread thread;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    thread.post([held = std::move(held)] {});
    thread.wait();
    EXPECT_TRUE(watched.expired());
}

TEST(JournalThreadTests, ItsEndWaitsForEverything) {
    int count = 0;
    {
        JournalThread thread;
        thread.postSynchronizing([&] { ++count; });
        for (int number = 0; number < 100; ++number)
            thread.post([&] { ++count; });
        thread.post([&] { thread.post([&] { ++count; }); });
    }
    EXPECT_EQ(count, 102);
}

TEST(JournalThreadTests, AnyThreadCanPost) {
    JournalThread thread;
    int count = 0;
    {
        std::vector<std::jthread> posters;
        for (int poster = 0; poster < 4; ++poster)
            posters.emplace_back([&] {
                for (int number = 0; number < 500; ++number)
                    thread.post([&] { ++count; });
                thread.wait();
            });
    }
    thread.wait();
    EXPECT_EQ(count, 2000);
}

} // namespace
} // namespace quelm
