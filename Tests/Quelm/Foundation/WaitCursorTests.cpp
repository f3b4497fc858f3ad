#include "Quelm/Foundation/WaitCursor.h"

#include <QCursor>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace quelm {
namespace {

bool isWaiting() {
    const QCursor* cursor = QGuiApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::WaitCursor;
}

TEST(WaitCursorTests, ThePointerWaitsWhileTheObjectLives) {
    ASSERT_FALSE(isWaiting());
    {
        const WaitCursor waiting(true);
        EXPECT_TRUE(isWaiting());
    }
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(WaitCursorTests, WhatTakesAMomentOnlyLeavesThePointerAlone) {
    const WaitCursor waiting(false);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(WaitCursorTests, AnInnerOneLeavesTheOuterOneWaiting) {
    const WaitCursor outer(true);
    {
        const WaitCursor inner(true);
        const WaitCursor unwanted(false);
    }
    EXPECT_TRUE(isWaiting());
}

} // namespace
} // namespace quelm
