#include "Quelm/Foundation/BackgroundThreads.h"

#include <QImage>
#include <QPainter>
#include <QSemaphore>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(BackgroundThreadsTests, PaintingDoesNotWaitForWorkInTheBackground) {
    QSemaphore begun;
    QSemaphore gate;
    const int count = backgroundThreads().maxThreadCount();
    for (int thread = 0; thread < count; ++thread)
        backgroundThreads().start([&] {
            begun.release();
            gate.acquire();
        });
    begun.acquire(count);

    // Large enough for Qt to share it out among threads.
    QImage image(2000, 2000, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.fillRect(image.rect(), QColor(0, 0, 255, 128));
    painter.end();
    EXPECT_NE(image.pixelColor(1000, 1000), QColor(Qt::white));

    gate.release(count);
    backgroundThreads().waitForDone();
}

TEST(BackgroundThreadsTests, OneThatTakesLongDoesNotKeepOthersWaiting) {
    EXPECT_GE(backgroundThreads().maxThreadCount(), 4);
}

} // namespace
} // namespace quelm
