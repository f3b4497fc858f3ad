#pragma once

#include "Quelm/Application/InstanceRequest.h"
#include "Quelm/Application/InstanceSocket.h"

#include <QObject>
#include <QSocketNotifier>

#include <list>
#include <string>

class QTimerEvent;

namespace quelm {

/// Answers the programs that are started while this one runs. Takes nothing from other users, and no bytes for granted.
class InstanceServer : public QObject {
    Q_OBJECT

public:
    explicit InstanceServer(InstanceSocket socket, QObject* parent = nullptr);
    ~InstanceServer() override;

    /// Programs that are heard at the same time; others are turned away.
    static constexpr std::size_t mostConnections = 16;

Q_SIGNALS:
    /// It has been told that this will be done.
    void requested(const quelm::InstanceRequest& request);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Connection;
    using Place = std::list<Connection>::iterator;

    void acceptNext();
    void readFrom(Place connection);
    void answer(Place connection, char byte);

    InstanceSocket socket_;
    QSocketNotifier notifier_;
    std::list<Connection> connections_;
};

} // namespace quelm
