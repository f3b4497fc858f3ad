#include "Quelm/Foundation/Disposal.h"

#include <QTest>
#include <QThread>

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <thread>

namespace quelm {
namespace {

class DisposalTests : public testing::Test {
protected:
    /// Tells where it is freed.
    std::shared_ptr<int> value() {
        return {new int(7), [freedOn = freedOn](int* number) {
                    delete number;
                    *freedOn = std::this_thread::get_id();
                }};
    }
    std::thread::id whereFreed() const {
        EXPECT_TRUE(QTest::qWaitFor([this] { return isFreed(); }));
        return *freedOn;
    }
    bool isFreed() const { return freedOn->load() != std::thread::id(); }

    const std::shared_ptr<std::atomic<std::thread::id>> freedOn = std::make_shared<std::atomic<std::thread::id>>();
    const std::thread::id here = std::this_thread::get_id();
};

TEST_F(DisposalTests, AValueIsFreedOnAnotherThread) {
    disposeInBackground(value());
    EXPECT_NE(whereFreed(), here);
}

TEST_F(DisposalTests, WhatAnOptionalHoldsIsFreedLikewise) {
    disposeInBackground(std::optional<std::shared_ptr<int>>());
    disposeInBackground(std::optional(value()));
    EXPECT_NE(whereFreed(), here);
}

TEST_F(DisposalTests, OnAnotherThreadItIsFreedAtOnce) {
    bool isFreedAtOnce = false;
    std::thread thread([&] {
        disposeInBackground(value());
        isFreedAtOnce = *freedOn == std::this_thread::get_id();
    });
    thread.join();
    EXPECT_TRUE(isFreedAtOnce);
}

TEST_F(DisposalTests, CopiesHoldTheSameValueAndTheLastOneFreesIt) {
    auto first = std::make_optional(DisposedInBackground(value()));
    auto second = first;
    EXPECT_EQ(**first, **second);
    first.reset();
    EXPECT_FALSE(second->isEmpty());
    EXPECT_EQ(***second, 7);
    EXPECT_FALSE(isFreed());
    second.reset();
    EXPECT_NE(whereFreed(), here);
}

TEST_F(DisposalTests, AMovedFromOneIsEmpty) {
    DisposedInBackground first(value());
    const DisposedInBackground second(std::move(first));
    EXPECT_TRUE(first.isEmpty()); // NOLINT(bugprone-use-after-move)
    EXPECT_FALSE(second.isEmpty());
    EXPECT_TRUE(DisposedInBackground<int>().isEmpty());
}

TEST_F(DisposalTests, AValueThatIsTakenIsItsTakers) {
    {
        std::shared_ptr<int> taken;
        {
            const DisposedInBackground first(value());
            const DisposedInBackground second = first;
            taken = second.take();
            EXPECT_TRUE(first.isEmpty());
        }
        EXPECT_EQ(*taken, 7);
    }
    EXPECT_EQ(whereFreed(), here);
}

TEST_F(DisposalTests, WhatIsReplacedIsFreedOnAnotherThread) {
    DisposedInBackground held(value());
    held = DisposedInBackground<std::shared_ptr<int>>();
    EXPECT_NE(whereFreed(), here);
}

} // namespace
} // namespace quelm
