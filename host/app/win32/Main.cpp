#include <windows.h>

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "host/app/CommandLine.h"
#include "host/app/win32/CallingConsole.h"

namespace {

using namespace qv::host;

std::string Utf8(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 1) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
  text.pop_back();
  return text;
}

std::wstring Wide(const std::string& text) {
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  if (size <= 1) return {};
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, wide.data(), size);
  wide.pop_back();
  return wide;
}

// Without the program's name.
std::vector<std::string> Arguments() {
  std::vector<std::string> arguments;
  for (int i = 1; i < __argc; ++i) arguments.push_back(Utf8(__wargv[i]));
  return arguments;
}

// Started with a click or a dropped file there is nowhere to write to. What a user has to know then
// comes in a box: an error when the program has failed, or the help that was asked for.
int RunWithoutConsole(const std::vector<std::string>& arguments) {
  std::ostringstream output;
  std::ostringstream errors;
  const int code = RunCommandLine(arguments, output, errors);
  const bool asked = !arguments.empty() && arguments[0].starts_with("-");
  const std::string text = code != 0 ? errors.str() : asked ? output.str() : std::string();
  if (!text.empty()) {
    MessageBoxW(nullptr, Wide(text).c_str(), L"Quorvane",
                MB_OK | (code != 0 ? MB_ICONERROR : MB_ICONINFORMATION));
  }
  return code;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  const CallingConsole console;
  if (!console.usable()) return RunWithoutConsole(Arguments());
  return RunCommandLine(Arguments(), std::cout, std::cerr);
}
