#include "Quelm/Application/InstanceServer.h"

#include <QTimerEvent>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <sys/socket.h>

namespace quelm {

namespace {

/// How long a program may take to say what it wants.
constexpr std::chrono::seconds patience{2};

} // namespace

struct InstanceServer::Connection {
    FileDescriptor socket;
    std::unique_ptr<QSocketNotifier> notifier;
    int timer = 0;
    std::string received;
};

InstanceServer::InstanceServer(InstanceSocket socket, QObject* parent)
    : QObject(parent), socket_(std::move(socket)), notifier_(socket_.number(), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &InstanceServer::acceptNext);
}

InstanceServer::~InstanceServer() = default;

void InstanceServer::acceptNext() {
    FileDescriptor accepted(::accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!accepted.isOpen() || !isOwnPeer(accepted.number()) || connections_.size() == mostConnections)
        return;
    const int number = accepted.number();
    const Place place = connections_.emplace(connections_.end());
    place->socket = std::move(accepted);
    place->timer = startTimer(patience);
    place->notifier = std::make_unique<QSocketNotifier>(number, QSocketNotifier::Read);
    connect(place->notifier.get(), &QSocketNotifier::activated, this, [this, place] { readFrom(place); });
}

void InstanceServer::readFrom(Place connection) {
    std::string& received = connection->received;
    std::array<char, 65536> piece;
    const ssize_t count = ::recv(connection->socket.number(), piece.data(), piece.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count > 0)
        received.append(piece.data(), static_cast<std::size_t>(count));
    if (count > 0 && received.size() < InstanceRequest::headerLength)
        return;
    const std::string_view all = received;
    const auto length = InstanceRequest::bodyLength(all.substr(0, InstanceRequest::headerLength));
    if (count > 0 && length && all.size() < InstanceRequest::headerLength + *length)
        return;
    // More than was announced is as wrong as less.
    const bool isWhole = length && all.size() == InstanceRequest::headerLength + *length;
    const auto request = isWhole ? InstanceRequest::fromBody(all.substr(InstanceRequest::headerLength)) : std::nullopt;
    answer(connection, request ? instanceAccepted : instanceRefused);
    if (request)
        Q_EMIT requested(*request);
}

void InstanceServer::answer(Place connection, char byte) {
    // Nothing can be done for one that does not wait for it.
    (void)::send(connection->socket.number(), &byte, 1, MSG_NOSIGNAL);
    killTimer(connection->timer);
    // Its notifier is in the middle of a signal.
    connection->notifier->setEnabled(false);
    connection->notifier.release()->deleteLater();
    connections_.erase(connection);
}

void InstanceServer::timerEvent(QTimerEvent* event) {
    const auto found = std::ranges::find(connections_, event->timerId(), &Connection::timer);
    if (found != connections_.end())
        answer(found, instanceRefused);
}

} // namespace quelm
