#include "platform/Ids.h"

#include <unistd.h>

#include <cstddef>
#include <random>

namespace qv::platform {

std::uint32_t CurrentProcessId() {
  return static_cast<std::uint32_t>(getpid());
}

// A random UUID (RFC 4122, version 4). The version stands in the high nibble of the third field,
// which Windows keeps little-endian: in byte 7 instead of byte 6.
std::array<std::uint8_t, 16> NewGuid() {
  std::random_device source;
  std::array<std::uint8_t, 16> guid;
  for (std::size_t i = 0; i < guid.size(); i += 4) {
    const unsigned word = source();
    for (std::size_t k = 0; k < 4; ++k) guid[i + k] = static_cast<std::uint8_t>(word >> (8 * k));
  }
  guid[7] = static_cast<std::uint8_t>((guid[7] & 0x0f) | 0x40);
  guid[8] = static_cast<std::uint8_t>((guid[8] & 0x3f) | 0x80);
  return guid;
}

}  // namespace qv::platform
