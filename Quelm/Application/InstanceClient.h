#pragma once

#include "Quelm/Application/InstanceRequest.h"
#include "Quelm/Application/InstanceSocket.h"

#include <chrono>
#include <optional>

namespace quelm {

/// What becomes of a program that was started: another one does what it was asked for, or it runs itself, as the one
/// that others are to hand over to if it has the socket.
struct InstanceClaim {
    bool isHandedOver = false;
    std::optional<InstanceSocket> socket;
};

/// Hands the request over to the program that has the socket, or takes its place when there is none. When it neither
/// answers nor goes within `patience`, this one runs by itself. Blocks so long at most.
InstanceClaim claimInstance(const InstanceAddress& address, const InstanceRequest& request,
                            std::chrono::milliseconds patience = std::chrono::seconds(2));

} // namespace quelm
