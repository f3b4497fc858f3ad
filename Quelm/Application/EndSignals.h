#pragma once

#include "FileCore/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quelm {

/// The signals by which the system asks the program to end: at a logout, from a terminal, by a service manager. Those
/// that it was started to ignore stay ignored. One at a time.
class EndSignals : public QObject {
    Q_OBJECT

public:
    explicit EndSignals(QObject* parent = nullptr);
    /// From then on they end the process at once again.
    ~EndSignals() override;

Q_SIGNALS:
    /// From the event loop.
    void received(int signal);

private:
    void read();

    FileDescriptor readEnd_;
    FileDescriptor writeEnd_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace quelm
