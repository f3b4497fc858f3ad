#include "Quelm/Foundation/Disposal.h"

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
    // There is no pool any more when the program ends.
    QThreadPool* pool = isMainThread() ? QThreadPool::globalInstance() : nullptr;
    if (pool)
        pool->start(std::move(dispose), beforeOtherWork);
    else
        dispose();
}

} // namespace quelm
