#include "platform/win32/WideText.h"

#include <windows.h>

namespace qv::platform {

std::wstring ToWide(const std::string& text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

}  // namespace qv::platform
