#include "e2e/support/Display.h"

#include <windows.h>

#include <string>

namespace qv::e2e {
namespace {

constexpr wchar_t kSettings[] = L"Software\\Ostrand Inc\\QuorvaneApp";

// Set where this user's settings of the viewer may be lost.
bool UserIsForTests() {
  return GetEnvironmentVariableW(L"QUORVANE_TEST_USER", nullptr, 0) != 0;
}

void ForgetSettings() {
  RegDeleteTreeW(HKEY_CURRENT_USER, kSettings);
}

std::filesystem::path MakeFolder() {
  std::error_code error;
  std::filesystem::path folder = std::filesystem::temp_directory_path(error) /
                                 (L"quorvane-e2e-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                                  std::to_wstring(GetTickCount64()));
  if (error || !std::filesystem::create_directory(folder, error)) return {};
  return folder;
}

}  // namespace

struct Display::Native {};

Display::Display() : folder_(MakeFolder()) {
  if (folder_.empty()) {
    failure_ = "no folder for temporary files";
  } else if (!UserIsForTests()) {
    failure_ = "the tests forget the user's settings: say QUORVANE_TEST_USER=1 if they may";
  } else {
    ForgetSettings();
    SetEnvironmentVariableW(L"QUORVANE_LOG", L"info");
    SetLanguage("en");
  }
}

Display::~Display() {
  if (UserIsForTests()) ForgetSettings();
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

void Display::SetLanguage(const std::string& language) {
  // The user's own is not for a test to change.
  SetEnvironmentVariableA("QUORVANE_LANGUAGE", language.c_str());
}

}  // namespace qv::e2e
