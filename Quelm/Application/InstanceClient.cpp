#include "Quelm/Application/InstanceClient.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace quelm {

namespace {

using Time = std::chrono::steady_clock::time_point;

/// Between two looks at a program that is just coming or going.
constexpr std::chrono::milliseconds pause{10};

enum class Answer : std::uint8_t {
    accepted,
    /// It will not do it, whenever it is asked.
    refused,
    /// There is nobody, or not any more.
    absent,
};

/// Whether the descriptor is ready before the deadline.
bool waitFor(int descriptor, short events, Time deadline) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        pollfd waiting{descriptor, events, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

/// Whether all could be sent.
bool send(int socket, std::string_view bytes, Time deadline) {
    while (!bytes.empty()) {
        // Nobody at the other end is no reason to be killed.
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno == EAGAIN && !waitFor(socket, POLLOUT, deadline))
            return false;
        else if (errno != EAGAIN && errno != EINTR)
            return false;
    }
    return true;
}

Answer receive(int socket, Time deadline) {
    for (;;) {
        char answer = 0;
        const ssize_t count = ::recv(socket, &answer, 1, 0);
        if (count == 1)
            return answer == instanceAccepted ? Answer::accepted : Answer::refused;
        if (count == 0 || (errno != EAGAIN && errno != EINTR))
            return Answer::absent;
        if (errno == EAGAIN && !waitFor(socket, POLLIN, deadline))
            return Answer::refused;
    }
}

Answer handOver(const InstanceAddress& address, std::string_view request, Time deadline) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isOpen())
        return Answer::refused;
    const auto* where = reinterpret_cast<const sockaddr*>(&address.socketAddress());
    if (::connect(socket.number(), where, sizeof address.socketAddress()) != 0) {
        const bool isAbsent = errno == ENOENT || errno == ECONNREFUSED;
        // Too many wait for an answer already: perhaps not for long.
        return isAbsent || errno == EAGAIN || errno == EINTR ? Answer::absent : Answer::refused;
    }
    if (!isOwnPeer(socket.number()))
        return Answer::refused;
    // What could not be sent may have been refused, or the other one is going; the answer tells.
    (void)send(socket.number(), request, deadline);
    return receive(socket.number(), deadline);
}

} // namespace

InstanceClaim claimInstance(const InstanceAddress& address, const InstanceRequest& request,
                            std::chrono::milliseconds patience) {
    const std::optional<std::string> bytes = request.encoded();
    if (!bytes)
        return {};
    const Time deadline = std::chrono::steady_clock::now() + patience;
    do {
        const Answer answer = handOver(address, *bytes, deadline);
        if (answer != Answer::absent)
            return {.isHandedOver = answer == Answer::accepted, .socket = std::nullopt};
        if (std::optional<InstanceSocket> socket = InstanceSocket::claim(address))
            return {.isHandedOver = false, .socket = std::move(socket)};
        // Another one has the lock and is about to listen, or to end.
        ::poll(nullptr, 0, static_cast<int>(pause.count()));
    } while (std::chrono::steady_clock::now() < deadline);
    return {};
}

} // namespace quelm
