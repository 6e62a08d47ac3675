#pragma once

#include <windows.h>

#include <chrono>
#include <optional>

namespace qv::platform {

struct SendOutcome {
  enum class Kind {
    kNotSent,  // the message does not reach the window: what it carries is still the sender's
    kGivenUp,  // the wait was ended; the window may have got the message
    kAnswered,
  };

  Kind kind = Kind::kNotSent;
  LRESULT result = 0;  // of an answer
};

// What ends the wait for an answer, besides the window's own end.
struct SendEnds {
  HANDLE close = nullptr;    // an event that is set
  HANDLE process = nullptr;  // that ends; may be null
  std::optional<std::chrono::milliseconds> patience;
};

// SendMessageW whose wait can be ended. The calling thread goes on handling messages that are sent
// to its own windows. Where an answer that comes after that carries a mapping, the mapping is
// closed.
SendOutcome SendToWindow(HWND window, UINT number, WPARAM wParam, const SendEnds& ends);

}  // namespace qv::platform
