#include "Quelm/Application/AppDelegate.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(AppDelegateTests, ClosingTheLastWindowEndsNothingBeforeOneWasShown) {
    AppDelegate delegate;
    QWidget window;
    delegate.observe(window);
    EXPECT_FALSE(delegate.hasShownWindow());
    EXPECT_FALSE(delegate.shouldTerminateAfterLastWindowClosed());
}

TEST(AppDelegateTests, OnceAWindowWasShownTheLastOneEndsTheApplication) {
    AppDelegate delegate;
    {
        QWidget window;
        delegate.observe(window);
        window.show();
        EXPECT_TRUE(delegate.hasShownWindow());
    }
    EXPECT_TRUE(delegate.hasShownWindow());
    EXPECT_TRUE(delegate.shouldTerminateAfterLastWindowClosed());
}

} // namespace
} // namespace quelm
