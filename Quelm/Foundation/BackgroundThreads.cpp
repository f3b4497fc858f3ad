#include "Quelm/Foundation/BackgroundThreads.h"

#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>

#include <algorithm>

namespace quelm {

namespace {

constexpr int leastCount = 4;

class BackgroundThreads : public QThreadPool {
public:
    BackgroundThreads() {
        setMaxThreadCount(std::max(leastCount, QThread::idealThreadCount()));
        qAddPostRoutine([] { backgroundThreads().waitForDone(); });
    }
};

} // namespace

QThreadPool& backgroundThreads() {
    static BackgroundThreads threads;
    return threads;
}

} // namespace quelm
