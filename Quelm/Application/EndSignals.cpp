#include "Quelm/Application/EndSignals.h"

#include "TextCore/Check.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quelm {

namespace {

constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes; below 0 while nobody reads.
std::atomic<int> handlerEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

/// Does nothing that a handler may not.
void passOn(int signal) {
    const int error = errno;
    const auto byte = static_cast<unsigned char>(signal);
    if (const int end = handlerEnd; end >= 0)
        // A pipe that is full tells it already.
        (void)!::write(end, &byte, 1);
    errno = error;
}

void setHandler(int signal, void (*handler)(int)) {
    struct sigaction before{};
    if (sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN)
        return;
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals(QObject* parent) : QObject(parent) {
    require(handlerEnd < 0, "one reader of the signals at a time");
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    readEnd_ = FileDescriptor(ends[0]);
    writeEnd_ = FileDescriptor(ends[1]);
    notifier_ = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &EndSignals::read);
    handlerEnd = ends[1];
    for (const int signal : endSignals)
        setHandler(signal, passOn);
}

EndSignals::~EndSignals() {
    for (const int signal : endSignals)
        setHandler(signal, SIG_DFL);
    handlerEnd = -1;
}

void EndSignals::read() {
    unsigned char signal = 0;
    if (::read(readEnd_.number(), &signal, 1) == 1)
        Q_EMIT received(signal);
}

} // namespace quelm
