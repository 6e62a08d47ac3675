#include "platform/NarrowText.h"

#include <windows.h>

#include <algorithm>
#include <climits>

#include "platform/win32/WideText.h"

namespace qv::platform {

namespace {

constexpr UINT kWesternEuropean = 1252;

// The system's, and not that of this process, which is UTF-8.
UINT SystemCodePage() {
  DWORD page = 0;
  GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                 reinterpret_cast<wchar_t*>(&page), sizeof(page) / sizeof(wchar_t));
  return page == CP_ACP || page == CP_UTF8 ? kWesternEuropean : page;
}

bool IsUtf8(const std::string& text) {
  const int size = static_cast<int>(std::min<std::size_t>(text.size(), INT_MAX));
  return size == 0 ||
         MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0) > 0;
}

}  // namespace

std::string Utf8FromNarrow(const std::string& text) {
  return IsUtf8(text) ? text : ToUtf8(ToWide(text, SystemCodePage()));
}

std::string FileNameFromNarrow(const std::string& name) {
  return Utf8FromNarrow(name);
}

}  // namespace qv::platform
