#pragma once

#include <windows.h>

#include <string>

namespace qv::platform {

// UTF-16 of a text in a code page, for the calls of the system, and UTF-8 of such a text. What
// means nothing in its encoding becomes a replacement character.
std::wstring ToWide(const std::string& text, UINT codePage = CP_UTF8);
std::string ToUtf8(const std::wstring& text);

}  // namespace qv::platform
