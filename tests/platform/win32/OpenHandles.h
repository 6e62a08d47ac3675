#pragma once

#include <windows.h>

namespace qv::platform {

// How many handles a process has open, found by trying: not every system that runs these tests
// counts them.
int OpenHandles(HANDLE process);

}  // namespace qv::platform
