#pragma once

#include <array>
#include <cstdint>

namespace qv::platform {

std::uint32_t CurrentProcessId();

// A new random identifier in the byte order of a Windows GUID. Any thread.
std::array<std::uint8_t, 16> NewGuid();

}  // namespace qv::platform
