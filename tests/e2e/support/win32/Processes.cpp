#include "e2e/support/Processes.h"

#include <windows.h>

namespace qv::e2e {
namespace {

double Seconds(const FILETIME& time) {
  constexpr double kUnitsPerSecond = 1e7;
  const std::uint64_t units = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return static_cast<double>(units) / kUnitsPerSecond;
}

}  // namespace

void KillProcess(std::uint32_t process) {
  const HANDLE handle = OpenProcess(PROCESS_TERMINATE, FALSE, process);
  if (handle == nullptr) return;
  TerminateProcess(handle, kExitCodeOfKilled);
  CloseHandle(handle);
}

double ProcessorSeconds(std::uint32_t process) {
  const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
  if (handle == nullptr) return 0;
  FILETIME created{}, ended{}, kernel{}, user{};
  GetProcessTimes(handle, &created, &ended, &kernel, &user);
  CloseHandle(handle);
  return Seconds(kernel) + Seconds(user);
}

std::optional<std::filesystem::path> WorkingFolder(std::uint32_t) {
  return std::nullopt;
}

}  // namespace qv::e2e
