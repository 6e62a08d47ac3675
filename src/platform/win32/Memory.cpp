#include "platform/Memory.h"

#include <windows.h>

#include <limits>

namespace qv::platform {

std::uint64_t AvailableMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof(status);
  if (GlobalMemoryStatusEx(&status) == 0) return std::numeric_limits<std::uint64_t>::max();
  return status.ullAvailPageFile;
}

}  // namespace qv::platform
