#include "platform/win32/OpenHandles.h"

#include <cstdint>

namespace qv::platform {

namespace {

// Numbers are multiples of four and are given out from below.
constexpr std::uintptr_t kStep = 4;
constexpr std::uintptr_t kBeyond = 0x2000;

}  // namespace

int OpenHandles(HANDLE process) {
  int count = 0;
  for (std::uintptr_t number = kStep; number < kBeyond; number += kStep) {
    HANDLE copy = nullptr;
    if (DuplicateHandle(process, reinterpret_cast<HANDLE>(number), GetCurrentProcess(), &copy, 0,
                        FALSE, DUPLICATE_SAME_ACCESS) == 0) {
      continue;
    }
    CloseHandle(copy);
    ++count;
  }
  return count;
}

}  // namespace qv::platform
