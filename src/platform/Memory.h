#pragma once

#include <cstdint>

namespace qv::platform {

// Bytes that this process can still use without taking them from others, swap space included. The
// largest number where the system does not tell. Any thread.
std::uint64_t AvailableMemory();

}  // namespace qv::platform
