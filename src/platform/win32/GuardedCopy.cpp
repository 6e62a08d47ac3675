#include "platform/GuardedCopy.h"

#include <cstring>

namespace qv::platform {

// A view keeps its committed pages until it is unmapped, whatever other processes do.

bool CopyFromShared(void* to, const void* shared, std::size_t size) {
  std::memcpy(to, shared, size);
  return true;
}

bool CopyToShared(void* shared, const void* from, std::size_t size) {
  std::memcpy(shared, from, size);
  return true;
}

}  // namespace qv::platform
