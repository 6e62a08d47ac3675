#pragma once

#include <cstdint>

namespace qv {

// Numbers of the messages that the frame posts to its own window. Those that it gets from the host
// are HostMessage.
enum FrameMessage : std::uint32_t {
  WM_VIEWER_UPDATE_STATUS = 32868,  // write the status bar anew
};

}  // namespace qv
