#pragma once

#include <cstdint>

#include "platform/posix/Descriptor.h"

namespace qv::platform {

// Sockets of type SOCK_SEQPACKET on the abstract address "QV_Window_" + window.

// Empty if the address is taken.
Descriptor ListenOnWindow(std::uint32_t window);
// Empty if nobody listens there, or somebody of another user.
Descriptor ConnectToWindow(std::uint32_t window);
// The next peer that waits to be accepted: empty if there is none, or it is of another user. Does
// not block.
Descriptor AcceptPeer(const Descriptor& listener);

}  // namespace qv::platform
