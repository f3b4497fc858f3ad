#pragma once

#include <functional>
#include <memory>

namespace quelm {

/// The one thread on which journals are written, in the order in which it is asked to. For the main thread unless said
/// otherwise; its end waits for all that it was asked for.
class JournalThread {
public:
    JournalThread();
    ~JournalThread();

    /// Runs `work`, which must not throw, soon. For any thread.
    void post(std::function<void()> work);

    /// Runs `work` when nothing has been posted for a moment, or half a second after this call, whichever is first: who
    /// has the same work waiting already need not post it again. For any thread.
    void postSynchronizing(std::function<void()> work);

    /// Returns when all that was posted has run, synchronizing included. For any other thread.
    void wait();

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace quelm
