#include "platform/Memory.h"

#include <fstream>
#include <limits>
#include <string>

namespace qv::platform {

// "/proc/meminfo" has lines such as "MemAvailable:   1234 kB".
std::uint64_t AvailableMemory() {
  constexpr std::uint64_t kKilobyte = 1024;
  std::ifstream file("/proc/meminfo");
  std::uint64_t kilobytes = 0;
  bool told = false;
  std::string name;
  std::uint64_t value = 0;
  while (file >> name >> value) {
    if (name == "MemAvailable:" || name == "SwapFree:") kilobytes += value;
    told = told || name == "MemAvailable:";
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  return told ? kilobytes * kKilobyte : std::numeric_limits<std::uint64_t>::max();
}

}  // namespace qv::platform
