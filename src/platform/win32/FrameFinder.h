#pragma once

#include <windows.h>

namespace qv::platform {

// The visible window of a process that is neither owned by another one nor a child: its frame. Null
// if there is none.
HWND FindFrame(DWORD processId);

}  // namespace qv::platform
