#include "Quelm/Foundation/Disposal.h"

#include "Quelm/Foundation/BackgroundThreads.h"

#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>

namespace quelm {

namespace {

/// Memory is given back before the next work asks for more.
constexpr int beforeOtherWork = 1;

bool isMainThread() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

} // namespace

void runDisposal(std::function<void()> dispose) {
    // Without an application nobody waits for the threads any more.
    if (isMainThread())
        backgroundThreads().start(std::move(dispose), beforeOtherWork);
    else
        dispose();
}

} // namespace quelm
