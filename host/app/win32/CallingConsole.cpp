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

bool LeadToConsole(std::FILE* file, std::ostream& stream) {
  const bool opened = std::freopen("CONOUT$", "w", file) != nullptr;
  stream.clear();
  return opened;
}

}  // namespace

CallingConsole::CallingConsole() {
  const bool outputIsLed = IsLedSomewhere(STD_OUTPUT_HANDLE);
  const bool errorsAreLed = IsLedSomewhere(STD_ERROR_HANDLE);
  usable_ = outputIsLed || errorsAreLed;
  if ((outputIsLed && errorsAreLed) || AttachConsole(ATTACH_PARENT_PROCESS) == 0) return;
  if (!outputIsLed && LeadToConsole(stdout, std::cout)) usable_ = true;
  if (!errorsAreLed && LeadToConsole(stderr, std::cerr)) usable_ = true;
  codePageBefore_ = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
}

CallingConsole::~CallingConsole() {
  std::cout.flush();
  if (codePageBefore_ != 0) SetConsoleOutputCP(codePageBefore_);
}

}  // namespace qv::host
