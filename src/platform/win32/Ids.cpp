#include "platform/Ids.h"

#include <windows.h>
// After windows.h.
#include <objbase.h>

#include <cstring>

namespace qv::platform {

std::uint32_t CurrentProcessId() {
  return GetCurrentProcessId();
}

std::array<std::uint8_t, 16> NewGuid() {
  GUID guid{};
  CoCreateGuid(&guid);
  std::array<std::uint8_t, 16> bytes;
  static_assert(sizeof(guid) == sizeof(bytes));
  std::memcpy(bytes.data(), &guid, sizeof(guid));
  return bytes;
}

}  // namespace qv::platform
