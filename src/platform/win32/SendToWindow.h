#pragma once

#include <windows.h>

#include <optional>

namespace qv::platform {

// SendMessageW whose wait can be ended: by `close` being set, by the end of `process` (may be
// null), or by the window's own end. The calling thread goes on handling messages that are sent to
// its own windows. Nothing if the wait was ended.
std::optional<LRESULT> SendToWindow(HWND window, UINT number, WPARAM wParam, HANDLE close,
                                    HANDLE process);

}  // namespace qv::platform
