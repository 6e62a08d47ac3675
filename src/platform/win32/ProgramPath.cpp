#include "platform/ProgramPath.h"

#include <windows.h>

namespace qv::platform {

namespace {

// The longest path that the system knows.
constexpr std::size_t kMaximumPath = 32768;

}  // namespace

std::filesystem::path ProgramPath() {
  std::wstring path(kMaximumPath, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (length == 0 || length == path.size()) return {};
  path.resize(length);
  return path;
}

std::string ProgramFileName(const std::string& name) {
  return name + ".exe";
}

}  // namespace qv::platform
