#include "Quelm/Recovery/JournalThread.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace quelm {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// Short enough for a pause in typing, long enough to join the keys before it.
constexpr std::chrono::milliseconds moment{150};
constexpr std::chrono::milliseconds longestDelay{500};

} // namespace

struct JournalThread::Implementation {
    using Work = std::function<void()>;
    struct Synchronizing {
        Work work;
        SteadyClock::time_point due;
    };

    std::mutex mutex;
    std::condition_variable somethingToDo;
    std::condition_variable nothingLeft;
    std::deque<Work> works;
    /// In the order in which they are due at the latest.
    std::deque<Synchronizing> synchronizings;
    SteadyClock::time_point lastPost = SteadyClock::now();
    bool isRunningWork = false;
    bool isEnding = false;
    std::int64_t waiters = 0;
    std::thread thread{[this] { run(); }};

    bool isIdle() const { return works.empty() && synchronizings.empty() && !isRunningWork; }

    /// The next work, when there is one to run now.
    Work next() {
        const bool isHurried = isEnding || waiters > 0;
        // One that is due goes first: records that keep coming must not put it off.
        if (!synchronizings.empty()) {
            const SteadyClock::time_point now = SteadyClock::now();
            const Synchronizing& first = synchronizings.front();
            const bool isPause = works.empty() && (isHurried || now >= lastPost + moment);
            if (isPause || now >= first.due) {
                Work work = std::move(synchronizings.front().work);
                synchronizings.pop_front();
                return work;
            }
        }
        if (works.empty())
            return {};
        Work work = std::move(works.front());
        works.pop_front();
        return work;
    }

    void run() {
        std::unique_lock lock(mutex);
        for (;;) {
            if (Work work = next()) {
                isRunningWork = true;
                lock.unlock();
                work();
                // What it holds may be large: it goes before anybody is told that all is done.
                work = {};
                lock.lock();
                isRunningWork = false;
                continue;
            }
            if (isIdle())
                nothingLeft.notify_all();
            if (!synchronizings.empty())
                somethingToDo.wait_until(lock, std::min(synchronizings.front().due, lastPost + moment));
            else if (isEnding)
                return;
            else
                somethingToDo.wait(lock);
        }
    }
};

JournalThread::JournalThread() : implementation_(std::make_unique<Implementation>()) {}

JournalThread::~JournalThread() {
    {
        const std::lock_guard lock(implementation_->mutex);
        implementation_->isEnding = true;
    }
    implementation_->somethingToDo.notify_all();
    implementation_->thread.join();
}

void JournalThread::post(std::function<void()> work) {
    {
        const std::lock_guard lock(implementation_->mutex);
        implementation_->works.push_back(std::move(work));
        implementation_->lastPost = SteadyClock::now();
    }
    implementation_->somethingToDo.notify_all();
}

void JournalThread::postSynchronizing(std::function<void()> work) {
    {
        const std::lock_guard lock(implementation_->mutex);
        implementation_->synchronizings.push_back({std::move(work), SteadyClock::now() + longestDelay});
    }
    implementation_->somethingToDo.notify_all();
}

void JournalThread::wait() {
    std::unique_lock lock(implementation_->mutex);
    ++implementation_->waiters;
    implementation_->somethingToDo.notify_all();
    implementation_->nothingLeft.wait(lock, [this] { return implementation_->isIdle(); });
    --implementation_->waiters;
}

} // namespace quelm
