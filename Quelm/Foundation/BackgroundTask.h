#pragma once

#include "Quelm/Foundation/BackgroundThreads.h"
#include "Quelm/Foundation/Disposal.h"

#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace quelm {

/// The handle of work that runs on another thread. Destroying or replacing it cancels: the stop token of the work is
/// requested and its result, should there still be one, is dropped. For the thread that started it.
class [[nodiscard]] BackgroundTask {
public:
    /// A handle of nothing.
    BackgroundTask() = default;
    BackgroundTask(BackgroundTask&&) noexcept = default;
    BackgroundTask& operator=(BackgroundTask&& other) noexcept {
        if (this != &other) {
            cancel();
            state_ = std::exchange(other.state_, nullptr);
        }
        return *this;
    }
    ~BackgroundTask() { cancel(); }

    void cancel() {
        if (const auto state = std::exchange(state_, nullptr)) {
            state->isAwaited = false;
            state->source.request_stop();
        }
    }

    /// Asks the work to end early. Its result, which should say so, is still delivered.
    void requestStop() {
        if (state_)
            state_->source.request_stop();
    }

    /// Gives up the handle without cancelling: the work goes on and its result is delivered.
    void detach() { state_ = nullptr; }

    /// Whether a result is still to come.
    bool isRunning() const { return state_ && state_->isAwaited; }

private:
    template <typename Work, typename Finished>
    friend BackgroundTask startInBackground(QThreadPool& pool, QObject* context, Work work, Finished finished);

    struct State {
        std::stop_source source;
        bool isAwaited = true;
    };
    explicit BackgroundTask(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_;
};

/// Runs `work(std::stop_token)` on a thread of the pool, then `finished(result)` on the thread that called, from its
/// event loop, unless the task was cancelled or `context` is gone by then. `work` must neither throw nor touch objects
/// of the calling thread. Work that has begun is waited for before the pool is gone. The result, when it is dropped,
/// and all that `work` holds are freed off the main thread.
template <typename Work, typename Finished>
BackgroundTask startInBackground(QThreadPool& pool, QObject* context, Work work, Finished finished) {
    using Result = std::invoke_result_t<Work&, std::stop_token>;
    auto state = std::make_shared<BackgroundTask::State>();
    auto promise = std::make_shared<QPromise<void>>();
    // Apart from the promise, which does not give away what it holds.
    auto delivery = std::make_shared<DisposedInBackground<Result>>();

    // A watcher dies with the context, which a plain call from the other thread could not notice without a race.
    auto* watcher = new QFutureWatcher<void>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher,
                     [watcher, state, delivery, finished = std::move(finished)]() mutable {
                         // What follows may delete the context, and must not delete the sender with it.
                         watcher->setParent(nullptr);
                         watcher->deleteLater();
                         const DisposedInBackground<Result> result = std::move(*delivery);
                         if (std::exchange(state->isAwaited, false))
                             finished(result.take());
                     });
    watcher->setFuture(promise->future());

    pool.start([promise, delivery, work = std::move(work), token = state->source.get_token()]() mutable {
        promise->start();
        *delivery = DisposedInBackground<Result>(work(token));
        promise->finish();
    });
    return BackgroundTask(std::move(state));
}

/// The same on one of the `backgroundThreads`.
template <typename Work, typename Finished>
BackgroundTask startInBackground(QObject* context, Work work, Finished finished) {
    return startInBackground(backgroundThreads(), context, std::move(work), std::move(finished));
}

} // namespace quelm
