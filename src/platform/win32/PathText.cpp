#include "platform/PathText.h"

#include <windows.h>

#include "platform/win32/WideText.h"

namespace qv::platform {

std::filesystem::path PathFromUtf8(std::string_view text) {
  return ToWide(std::string(text));
}

std::string Utf8FromPath(const std::filesystem::path& path) {
  return ToUtf8(path.native());
}

std::filesystem::path PathFromEnvironment(const char* name) {
  const std::wstring wideName = ToWide(name);
  std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
  const DWORD length =
      GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
  // It may have grown meanwhile.
  value.resize(length < value.size() ? length : 0);
  return value;
}

}  // namespace qv::platform
