#include "host/app/win32/CallingConsole.h"

#include <cstdio>
#include <iostream>

namespace qv::host {
namespace {

bool IsLedSomewhere(DWORD which) {
  const HANDLE handle = GetStdHandle(which);
  return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
         GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

}  // namespace

CallingConsole::CallingConsole() {
  redirected_ = IsLedSomewhere(STD_OUTPUT_HANDLE) && IsLedSomewhere(STD_ERROR_HANDLE);
  if (redirected_ || AttachConsole(ATTACH_PARENT_PROCESS) == 0) return;
  attached_ = std::freopen("CONOUT$", "w", stdout) != nullptr &&
              std::freopen("CONOUT$", "w", stderr) != nullptr;
  std::cout.clear();
  std::cerr.clear();
  codePageBefore_ = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
}

CallingConsole::~CallingConsole() {
  std::cout.flush();
  if (codePageBefore_ != 0) SetConsoleOutputCP(codePageBefore_);
}

}  // namespace qv::host
